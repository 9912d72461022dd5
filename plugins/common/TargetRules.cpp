#include "common/TargetRules.h"

#include <algorithm>
#include <cmath>

#include "common/Keywords.h"
#include "data/NumericValue.h"
#include "translate/BaseTranslator.h"
#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/PMMLStandardTags.h"

namespace KxVeyra_940::Plugin {

namespace Tags = PMMLModelTags;
namespace StandardTags = PMMLStandardTags;
using xercesc::DOMElement;
using Cast = TargetRules::Cast;

namespace {

constexpr const char* kMin = Tags::XML_ZENT_TRANFUNC_MIN;
constexpr const char* kMax = Tags::XML_ZENT_TRANFUNC_MAX;

constexpr Keyword<Cast> kCasts[] = {
    {"", Cast::kNone},
    {Tags::XML_ZENT_TRANFUNC_RND, Cast::kRound},
    {StandardTags::XML_VAL_CEILING, Cast::kCeiling},
    {Tags::XML_ZENT_TRANFUNC_FLOOR, Cast::kFloor},
};

TargetRules ReadRules(const DOMElement& element) {
  TargetRules rules;
  rules.min = OptionalNumber(element, kMin).value_or(rules.min);
  rules.max = OptionalNumber(element, kMax).value_or(rules.max);
  if (!(rules.min <= rules.max)) {
    Raise(MessageId::kValuesMismatch,
          {OptionalText(element, kMin), kMin, OptionalText(element, kMax), kMax, Tags::XML_ELE_TARGET});
  }
  rules.factor = OptionalNumber(element, StandardTags::XML_ATT_RESCALEFACTOR).value_or(rules.factor);
  rules.constant = OptionalNumber(element, StandardTags::XML_ATT_RESCALECONSTANT).value_or(rules.constant);
  rules.cast = ReadKeyword(element, StandardTags::XML_ATT_CASTINTEGER, kCasts);
  return rules;
}

}  // namespace

double TargetRules::Apply(double number) const {
  const double rescaled = std::clamp(number, min, max) * factor + constant;
  switch (cast) {
    case Cast::kRound:
      return std::round(rescaled);
    case Cast::kCeiling:
      return std::ceil(rescaled);
    case Cast::kFloor:
      return std::floor(rescaled);
    case Cast::kNone:
      break;
  }
  return rescaled;
}

double TargetRules::ApplyToError(double error) const {
  return NumericValue::IsSystemMissingValue(error) ? error : error * std::fabs(factor);
}

TargetRules ReadTargetRules(const DOMElement& model, const ScoreDictVar* target) {
  TargetRules rules;
  if (target == nullptr) return rules;
  ForEachChildElement(
      BaseTranslator::GetChildByTag(&model, Tags::XML_ELE_TARGETS), [&](const DOMElement& child) {
        const bool isOurs =
            HasTag(child, Tags::XML_ELE_TARGET) &&
            BaseTranslator::IsEqual(Attribute(child, Tags::XML_ATT_FIELD), target->GetName().c_str());
        if (isOurs) rules = ReadRules(child);
      });
  return rules;
}

}  // namespace KxVeyra_940::Plugin
