// Turns the "dictionary" element of a zent-ml document into a dictionary.  The model elements of the format
// are for plug-ins to read; the vocabulary of both is in vocabulary/ZENTModelTags.h.
//
//   <dictionary>
//     <variable name="age" storage-type="NUMERIC" measurement-level="CONTINUOUS" label="Age in years">
//       <missing-values><category value="-9"/></missing-values>
//     </variable>
//     <variable name="sex" storage-type="STRING" measurement-level="NOMINAL">
//       <categories><category value="f" display-value="female"/><category value="m"/></categories>
//     </variable>
//   </dictionary>
//
// Threads, texts and errors as in translate/BaseTranslator.h.

#ifndef VEYRA_TRANSLATE_ZENTTRANSLATOR_H_
#define VEYRA_TRANSLATE_ZENTTRANSLATOR_H_

#include <string>

#include "translate/BaseTranslator.h"
#include "veyra/Export.h"
#include "veyra/ScoreDictionary.h"

namespace KxVeyra_940 {

class VEYRA_API ZENTTranslator : public BaseTranslator {
 public:
  // `encoding` names the encoding of the narrow texts of everything built; empty means UTF-8.
  explicit ZENTTranslator(const std::string& encoding);
  ~ZENTTranslator() override;

  // No form is supported until a subclass overrides it: each returns null.
  using BaseTranslator::ParseFromTree;
  ScoreModel* ParseFromTree(xercesc::DOMDocument* document, const std::string& encoding) override;

  // A new dictionary of the element's variables; the caller owns it.  Makes the transcoder when there is none
  // yet.  String variables get a category encoder.  Errors 260115 (null), 260117, 260118, 260120, 260126,
  // 260151, 260152, 260154, 260178, 260202, 260211, 260283, 260285, 260292.
  ScoreDictionary* ParseDictionary(const xercesc::DOMElement* element);

  // As PMMLTranslator::SetupCatEncoder.
  static bool SetupCatEncoder(ScoreDictVar* variable);

 private:
  std::string fEncoding;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSLATE_ZENTTRANSLATOR_H_
