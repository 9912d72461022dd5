// Forgiving reads for plug-ins that prefer a default to an exception.
//
//   DOMElemUtility utility(translator, translator->GetTranscoder());
//   const int layers = utility.GetAttributeToInt(element, "numberOfLayers", false);   // -1 when there is
//   none
//
// Every operation: a null element, an empty name, and a utility without a translator give the default.  With
// `forced` a VYException passes to the caller, without it the default is returned.  Other exceptions pass.

#ifndef VEYRA_TRANSLATE_DOMELEMUTILITY_H_
#define VEYRA_TRANSLATE_DOMELEMUTILITY_H_

#include <string>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNodeList.hpp>

#include "veyra/Export.h"

namespace KxVeyra_940 {

class PMMLTranslator;
class VeyraTranscoder;

class VEYRA_API DOMElemUtility {
 public:
  // Both are lent and may be null; they outlive the utility.
  DOMElemUtility(const PMMLTranslator* translator, const VeyraTranscoder* transcoder);
  virtual ~DOMElemUtility();

  // The first child element of that tag; default null.
  xercesc::DOMElement* GetChildElemByName(const xercesc::DOMElement* element, const std::string& name,
                                          bool forced) const;
  // The attribute in the transcoder's encoding; default empty, also without a transcoder.
  std::string GetAttributeToString(const xercesc::DOMElement* element, const std::string& name,
                                   bool forced) const;
  int GetAttributeToInt(const xercesc::DOMElement* element, const std::string& name,
                        bool forced) const;  // default -1
  double GetAttributeToDouble(const xercesc::DOMElement* element, const std::string& name,
                              bool forced) const;  // default -1.0
  // The number of descendants of that name; default 0.
  int GetNodeListLength(const xercesc::DOMElement* element, const std::string& name, bool forced) const;
  // The descendant at that position, counted from 0; default null, also beyond the last.
  xercesc::DOMElement* GetElemFromNodeList(const xercesc::DOMElement* element, const std::string& name,
                                           int index, bool forced) const;
  // The document's live list of the descendants of that name; default null, also when there are none.  Needs
  // no translator.
  xercesc::DOMNodeList* GetDOMNodeList(const xercesc::DOMElement* element, const std::string& name,
                                       bool forced) const;

 private:
  const PMMLTranslator* fTranslator;
  const VeyraTranscoder* fTranscoder;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSLATE_DOMELEMUTILITY_H_
