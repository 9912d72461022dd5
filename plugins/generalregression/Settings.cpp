#include "generalregression/Settings.h"

#include "error/Raise.h"
#include "translate/DomReader.h"
#include "translate/PMMLTranslator.h"
#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/ZENTModelTags.h"

namespace KxVeyra_940::Plugin {

namespace Tags = PMMLModelTags;
using xercesc::DOMElement;

namespace {

// What the library's vocabulary does not have.
constexpr const char* kModelDF = "modelDF";

constexpr Keyword<ModelType> kPmmlTypes[] = {
    {"regression", ModelType::kLinear},
    {"generalLinear", ModelType::kLinear},
    {"generalizedLinear", ModelType::kGeneralizedLinear},
    {"multinomialLogistic", ModelType::kMultinomialLogistic},
    {"ordinalMultinomial", ModelType::kOrdinalMultinomial},
    {"CoxRegression", ModelType::kCoxRegression},
    // Of older documents.
    {"logLinear", ModelType::kLogLinear},
    {"conditionalLogistic", ModelType::kMultinomialLogistic},
};

constexpr Keyword<ModelType> kZentTypes[] = {
    {"regression", ModelType::kLinear},
    {"general-linear", ModelType::kLinear},
    {"log-linear", ModelType::kLogLinear},
    {"multinomial-logistic", ModelType::kMultinomialLogistic},
    {"conditional-logistic", ModelType::kMultinomialLogistic},
};

struct LinkWord {
  LinkFunction function;
  bool isCumulative;
};

constexpr Keyword<LinkWord> kLinks[] = {
    {"identity", {LinkFunction::kIdentity, false}},
    {"log", {LinkFunction::kLog, false}},
    {"logc", {LinkFunction::kLogc, false}},
    {"logit", {LinkFunction::kLogit, false}},
    {"probit", {LinkFunction::kProbit, false}},
    {"cloglog", {LinkFunction::kCloglog, false}},
    {"loglog", {LinkFunction::kLoglog, false}},
    {"cauchit", {LinkFunction::kCauchit, false}},
    {"power", {LinkFunction::kPower, false}},
    {"oddspower", {LinkFunction::kOddspower, false}},
    {"negbin", {LinkFunction::kNegbin, false}},
    // Of older documents, which write cumulative links of ordinal models here as well.
    {"nloglog", {LinkFunction::kLoglog, false}},
    {"cumlogit", {LinkFunction::kLogit, true}},
    {"cumprobit", {LinkFunction::kProbit, true}},
    {"cumcloglog", {LinkFunction::kCloglog, true}},
    {"cumnloglog", {LinkFunction::kLoglog, true}},
    {"cumcauchit", {LinkFunction::kCauchit, true}},
};

constexpr Keyword<LinkFunction> kCumulativeLinks[] = {
    {"logit", LinkFunction::kLogit},     {"probit", LinkFunction::kProbit},
    {"cloglog", LinkFunction::kCloglog}, {"loglog", LinkFunction::kLoglog},
    {"cauchit", LinkFunction::kCauchit},
};

// A case is scored by the link alone; the distribution says how the estimates were found.
constexpr Keyword<bool> kDistributions[] = {
    {"binomial", true}, {"gamma", true},  {"igauss", true},  {"multinomial", true},
    {"negbin", true},   {"normal", true}, {"poisson", true}, {"tweedie", true},
};

double RequiredSetting(const DOMElement& element, const char* name) {
  const std::optional<double> number = FindSetting(element, name).ReadNumber();
  if (!number.has_value()) Raise(MessageId::kMissingAttributeOf, {name, Tags::XML_ELE_REGRESSMODEL});
  return *number;
}

class PmmlReader {
 public:
  PmmlReader(const DOMElement& element, BaseModel::FUNCNAME_TYPE function)
      : fElement(element), fFunction(function) {}

  Settings Read() {
    RequiredNonEmptyAttribute(fElement, Tags::XML_ATT_RM_MODEL_TYPE);
    fSettings.type = ReadKeyword(fElement, Tags::XML_ATT_RM_MODEL_TYPE, kPmmlTypes);
    const Setting distribution = Find(Tags::XML_VAL_RM_EXT_NAME_DISTRIBUTION);
    if (distribution.IsGiven()) distribution.ReadWord(kDistributions);
    FindSetting(fElement, kModelDF).ReadNumber();
    ReadLink();
    RequireFunction();
    ReadOffset();
    if (fSettings.type == ModelType::kGeneralizedLinear) ReadTrials();
    fSettings.referenceCategory = Find(Tags::XML_ATT_TARGETREFCATEGORY);
    return fSettings;
  }

 private:
  Setting Find(const char* name) const { return FindSetting(fElement, name); }

  [[noreturn]] void RaiseMissing(const char* attribute) const {
    Raise(MessageId::kMissingAttributeOf, {attribute, Tags::XML_ELE_REGRESSMODEL});
  }

  void ReadLink() {
    Setting link = Find(Tags::XML_ATT_RM_NAME_LINKFUNCTION);
    if (!link.IsGiven()) link = Find(Tags::XML_VAL_RM_EXT_NAME_LINK);
    const Setting cumulative = Find(Tags::XML_ATT_RM_NAME_CUMULATIVELINK);
    switch (fSettings.type) {
      case ModelType::kLogLinear:
        fSettings.link.function = LinkFunction::kLog;
        return;
      case ModelType::kGeneralizedLinear:
        if (!link.IsGiven()) RaiseMissing(Tags::XML_ATT_RM_NAME_LINKFUNCTION);
        return ReadLinkFunction(link.ReadWord(kLinks));
      case ModelType::kOrdinalMultinomial:
        if (cumulative.IsGiven()) {
          fSettings.link.function = cumulative.ReadWord(kCumulativeLinks);
        } else if (link.IsGiven()) {
          fSettings.link.function = link.ReadWord(kLinks).function;
        } else {
          RaiseMissing(Tags::XML_ATT_RM_NAME_CUMULATIVELINK);
        }
        return;
      default:
        return;
    }
  }

  void ReadLinkFunction(const LinkWord& word) {
    if (word.isCumulative) fSettings.type = ModelType::kOrdinalMultinomial;
    fSettings.link.function = word.function;
    if (word.function == LinkFunction::kPower || word.function == LinkFunction::kOddspower) {
      fSettings.link.parameter = RequiredSetting(fElement, Tags::XML_ATT_RM_EXT_NAME_LINK_PARAM);
    }
    if (word.function == LinkFunction::kNegbin) {
      fSettings.link.parameter = RequiredSetting(fElement, Tags::XML_ATT_RM_EXT_NAME_DIST_PARAM);
      if (!(fSettings.link.parameter > 0)) {
        const std::string text = Find(Tags::XML_ATT_RM_EXT_NAME_DIST_PARAM).GetText();
        Raise(MessageId::kNotPositive, {text, Tags::XML_ATT_RM_EXT_NAME_DIST_PARAM});
      }
    }
  }

  // A generalized linear model predicts either.
  void RequireFunction() const {
    const bool isEither = fSettings.type == ModelType::kGeneralizedLinear &&
                          (fFunction == BaseModel::kRegression || fFunction == BaseModel::kClassification);
    if (isEither || fFunction == FunctionOf(fSettings.type)) return;
    Raise(MessageId::kConflictingValues,
          {OptionalText(fElement, Tags::XML_ATT_FUNCTIONNAME), Tags::XML_ATT_FUNCTIONNAME,
           OptionalText(fElement, Tags::XML_ATT_RM_MODEL_TYPE), Tags::XML_ATT_RM_MODEL_TYPE});
  }

  // A field, or a number; the field when both are given is an error.
  std::optional<double> ReadFieldOrNumber(const char* fieldName, const char* numberName,
                                          Setting& field) const {
    field = Find(fieldName);
    const Setting number = Find(numberName);
    if (field.IsGiven() && number.IsGiven()) {
      Raise(MessageId::kConflictingAttributes, {fieldName, numberName});
    }
    return number.ReadNumber();
  }

  void ReadOffset() {
    const std::optional<double> offset =
        ReadFieldOrNumber(Tags::XML_VAL_RM_EXT_NAME_OFFSETVAR, Tags::XML_ATT_RM_EXT_NAME_OFFSET_VALUE,
                          fSettings.offsetVariable);
    fSettings.offset = offset.value_or(0);
  }

  // Counts of events; a category is one event.
  void ReadTrials() {
    constexpr const char* kVariable = Tags::XML_VAL_RM_EXT_NAME_TRIALVAR;
    constexpr const char* kValue = Tags::XML_ATT_RM_EXT_NAME_TRIALS_VALUE;
    const std::optional<double> trials = ReadFieldOrNumber(kVariable, kValue, fSettings.trialsVariable);
    if (!trials.has_value() && !fSettings.trialsVariable.IsGiven()) return;
    const std::string text = trials.has_value() ? Find(kValue).GetText() : fSettings.trialsVariable.GetText();
    if (fFunction == BaseModel::kClassification) {
      Raise(MessageId::kConflictingValues,
            {OptionalText(fElement, Tags::XML_ATT_FUNCTIONNAME), Tags::XML_ATT_FUNCTIONNAME, text,
             trials.has_value() ? kValue : kVariable});
    }
    if (trials.has_value() && !(*trials > 0)) Raise(MessageId::kNotPositive, {text, kValue});
    fSettings.trials = trials.value_or(1);
  }

  const DOMElement& fElement;
  BaseModel::FUNCNAME_TYPE fFunction;
  Settings fSettings;
};

}  // namespace

std::string Setting::GetText() const {
  return element == nullptr ? std::string() : OptionalText(*element, attribute);
}

std::optional<double> Setting::ReadNumber() const {
  if (element == nullptr) return std::nullopt;
  return OptionalNumber(*element, attribute);
}

const DOMElement* FindExtension(const DOMElement& element, const char* name) {
  const DOMElement* found = nullptr;
  ForEachChildElement(&element, [&](const DOMElement& child) {
    const bool isMeant = HasTag(child, Tags::XML_ELE_EXTENSION) &&
                         BaseTranslator::IsEqual(Attribute(child, Tags::XML_ATT_EXT_NAME), name);
    if (isMeant && found == nullptr) found = &child;
  });
  return found;
}

Setting FindSetting(const DOMElement& element, const char* name) {
  if (!IsEmpty(FindAttribute(element, name))) return {&element, name};
  const DOMElement* extension = FindExtension(element, name);
  if (extension == nullptr || IsEmpty(FindAttribute(*extension, Tags::XML_ATT_EXT_VALUE))) return {};
  return {extension, Tags::XML_ATT_EXT_VALUE};
}

BaseModel::FUNCNAME_TYPE FunctionOf(ModelType type) {
  const bool isOfCategories =
      type == ModelType::kMultinomialLogistic || type == ModelType::kOrdinalMultinomial;
  return isOfCategories ? BaseModel::kClassification : BaseModel::kRegression;
}

Settings ReadPmmlSettings(const DOMElement& element, BaseModel::FUNCNAME_TYPE function) {
  return PmmlReader(element, function).Read();
}

Settings ReadZentSettings(const DOMElement& element) {
  const char* const type = ZENTModelTags::XML_ATT_RM_MODEL_TYPE.c_str();
  RequiredNonEmptyAttribute(element, type);
  Settings settings;
  settings.type = ReadKeyword(element, type, kZentTypes);
  if (settings.type == ModelType::kLogLinear) settings.link.function = LinkFunction::kLog;
  // They say nothing about a case.
  OptionalInteger(element, ZENTModelTags::XML_ATT_RM_N_PARAM.c_str());
  OptionalNumber(element, ZENTModelTags::XML_ATT_RM_MODEL_DF.c_str());
  return settings;
}

}  // namespace KxVeyra_940::Plugin
