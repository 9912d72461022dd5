// The invalid range that "invalidRangeLower" and "invalidRangeUpper" extensions give, bound by bound.

#ifndef VEYRA_TRANSLATE_INVALIDRANGEINTERNAL_H_
#define VEYRA_TRANSLATE_INVALIDRANGEINTERNAL_H_

#include "data/NumericValue.h"
#include "translate/DomReader.h"
#include "translate/PMMLTranslator.h"
#include "vocabulary/PMMLModelTags.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {

class InvalidRange {
 public:
  // False for an extension of another name.  Error 260151.
  bool Read(const xercesc::DOMElement& extension) {
    const XMLCh* const name = Attribute(extension, PMMLModelTags::XML_ATT_EXT_NAME);
    const bool isLower = KxXML_940::EqualsAscii(name, PMMLModelTags::XML_VAL_NAME_MSLO);
    if (!isLower && !KxXML_940::EqualsAscii(name, PMMLModelTags::XML_VAL_NAME_MSUP)) return false;
    const double bound = BaseTranslator::VerifyDouble(Attribute(extension, PMMLModelTags::XML_ATT_EXT_VALUE));
    (isLower ? fLower : fUpper) = bound;
    int& times = isLower ? fLowerTimes : fUpperTimes;
    if (times < kTwice) ++times;
    return true;
  }

  // Error 260272 when a bound was given twice.
  void AddTo(ScoreMissingValueSet& missingValues) const {
    PMMLTranslator::HandleZENTMissingInterval(&missingValues, fLowerTimes + kUpperGiven * fUpperTimes, fLower,
                                              fUpper);
  }

 private:
  static constexpr int kUpperGiven = 10;
  static constexpr int kTwice = 2;  // no bound counts further: ten lower ones are not an upper one

  int fLowerTimes = 0;
  int fUpperTimes = 0;
  double fLower = -NumericValue::gInfinity;
  double fUpper = NumericValue::gInfinity;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSLATE_INVALIDRANGEINTERNAL_H_
