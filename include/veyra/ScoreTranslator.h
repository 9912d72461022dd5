// Builds models from documents; every plug-in hands one out.
//
// A plug-in exports, unmangled:
//   extern "C" VEYRA_API KxVeyra_940::ScoreTranslator* GiveMyTranslator();   // new; the factory deletes it
//   extern "C" VEYRA_API void PassModelNames(KxVeyra_940::ScoreTranslator*, const std::vector<std::string>&);
// The second is optional.  Threads: a translator is used by one thread, for one document.

#ifndef VEYRA_SCORETRANSLATOR_H_
#define VEYRA_SCORETRANSLATOR_H_

#include <iosfwd>
#include <string>
#include <xercesc/util/XercesDefs.hpp>

#include "veyra/Export.h"
#include "veyra/ScoreDictionary.h"
#include "veyra/ScoreModel.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMDocument;
class DOMElement;
XERCES_CPP_NAMESPACE_END

namespace KxVeyra_940 {

// Every ParseFromTree returns a new model that the caller owns, or null when the form is not supported.
// `encoding` names the encoding of the narrow texts of dictionaries and model; empty means UTF-8.
class VEYRA_API ScoreTranslator {
 public:
  virtual ~ScoreTranslator();
  virtual ScoreModel* ParseFromTree(xercesc::DOMDocument* document, const std::string& encoding) = 0;
  virtual ScoreModel* ParseFromTree(std::istream& in, const std::string& encoding) = 0;
  virtual ScoreModel* ParseFromTree(const std::string& path, const std::string& encoding) = 0;
  virtual ScoreModel* ParseFromTree(xercesc::DOMElement* modelElement, ScoreDictionary* dictionary,
                                    ScoreDictionary* transformationDictionary,
                                    const std::string& encoding) = 0;
  virtual ScoreModel* ParseFromTree(xercesc::DOMElement* modelElement, ScoreModel* baseModel,
                                    const std::string& encoding) = 0;
  virtual ScoreModel* ParseFromTree(xercesc::DOMElement* first, xercesc::DOMElement* second,
                                    xercesc::DOMElement* modelElement, const std::string& encoding) = 0;
  virtual void SetSupportOldParser(bool supportOldParser) = 0;
  virtual ScoreModel* ParseFromTree(std::istream& in, const std::string& encoding,
                                    const std::string& auxPath) = 0;
  virtual ScoreModel* ParseFromTree(xercesc::DOMDocument* document, ScoreDictionary* dictionary,
                                    const std::string& encoding) = 0;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_SCORETRANSLATOR_H_
