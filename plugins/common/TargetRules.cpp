#include "common/TargetRules.h"

#include <algorithm>
#include <cmath>

#include "common/Keywords.h"
#include "data/NumericValue.h"
#include "translate/BaseTranslator.h"
#include "vocabulary/PMMLModelTags.h"

namespace KxVeyra_940::Plugin {

namespace Tags = PMMLModelTags;
using xercesc::DOMElement;
using Cast = TargetRules::Cast;

namespace {

constexpr const char* kMin = "min";
constexpr const char* kMax = "max";

constexpr Keyword<Cast> kCasts[] = {
    {"", Cast::kNone},
    {"round", Cast::kRound},
    {"ceiling", Cast::kCeiling},
    {"floor", Cast::kFloor},
};

TargetRules ReadRules(const DOMElement& element) {
  TargetRules rules;
  rules.min = OptionalNumber(element, kMin).value_or(rules.min);
  rules.max = OptionalNumber(element, kMax).value_or(rules.max);
  if (!(rules.min <= rules.max)) {
    Raise(MessageId::kValuesMismatch,
          {OptionalText(element, kMin), kMin, OptionalText(element, kMax), kMax, Tags::XML_ELE_TARGET});
  }
  rules.factor = OptionalNumber(element, "rescaleFactor").value_or(rules.factor);
  rules.constant = OptionalNumber(element, "rescaleConstant").value_or(rules.constant);
  rules.cast = ReadKeyword(element, "castInteger", kCasts);
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
