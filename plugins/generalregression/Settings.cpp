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

constexpr Keyword<ModelType> kPmmlTypes[] = {
    {Tags::XML_VAL_MT_REGRESS, ModelType::kLinear},
    {Tags::XML_VAL_MT_GLIN, ModelType::kLinear},
    {Tags::XML_VAL_MT_GDLIN, ModelType::kGeneralizedLinear},
    {Tags::XML_VAL_MT_MLR, ModelType::kMultinomialLogistic},
    {Tags::XML_VAL_MT_ORDINAL, ModelType::kOrdinalMultinomial},
    {Tags::XML_VAL_MT_COXRGN, ModelType::kCoxRegression},
    // Of older documents.
    {Tags::XML_VAL_MT_LOGLIN, ModelType::kLogLinear},
    {Tags::XML_VAL_MT_COND, ModelType::kMultinomialLogistic},
};

struct LinkWord {
  LinkFunction function;
  bool isCumulative;
};

constexpr Keyword<LinkWord> kLinks[] = {
    {Tags::XML_VAL_RM_EXT_VALUE_LINK_IDENTITY, {LinkFunction::kIdentity, false}},
    {Tags::XML_VAL_RM_EXT_VALUE_LINK_LOG, {LinkFunction::kLog, false}},
    {Tags::XML_VAL_RM_EXT_VALUE_LINK_LOGC, {LinkFunction::kLogc, false}},
    {Tags::XML_VAL_RM_EXT_VALUE_LINK_LOGIT, {LinkFunction::kLogit, false}},
    {Tags::XML_VAL_RM_EXT_VALUE_LINK_PROBIT, {LinkFunction::kProbit, false}},
    {Tags::XML_VAL_RM_EXT_VALUE_LINK_CLOGLOG, {LinkFunction::kCloglog, false}},
    {Tags::XML_VAL_RM_VALUE_LINK_LOGLOG, {LinkFunction::kLoglog, false}},
    {Tags::XML_VAL_RM_VALUE_LINK_CAUCHIT, {LinkFunction::kCauchit, false}},
    {Tags::XML_VAL_RM_EXT_VALUE_LINK_POWER, {LinkFunction::kPower, false}},
    {Tags::XML_VAL_RM_EXT_VALUE_LINK_ODDSPOWER, {LinkFunction::kOddspower, false}},
    {Tags::XML_VAL_RM_EXT_VALUE_LINK_NEGBIN, {LinkFunction::kNegbin, false}},
    // Of older documents, which write cumulative links of ordinal models here as well.
    {Tags::XML_VAL_RM_EXT_VALUE_LINK_NLOGLOG, {LinkFunction::kLoglog, false}},
    {Tags::XML_VAL_RM_EXT_VALUE_LINK_CUM_LOGIT, {LinkFunction::kLogit, true}},
    {Tags::XML_VAL_RM_EXT_VALUE_LINK_CUM_PROBIT, {LinkFunction::kProbit, true}},
    {Tags::XML_VAL_RM_EXT_VALUE_LINK_CUM_CLOGLOG, {LinkFunction::kCloglog, true}},
    {Tags::XML_VAL_RM_EXT_VALUE_LINK_CUM_LOGLOG, {LinkFunction::kLoglog, true}},
    {Tags::XML_VAL_RM_EXT_VALUE_LINK_CUM_CAUCHIT, {LinkFunction::kCauchit, true}},
};

constexpr Keyword<LinkFunction> kCumulativeLinks[] = {
    {Tags::XML_VAL_RM_EXT_VALUE_LINK_LOGIT, LinkFunction::kLogit},
    {Tags::XML_VAL_RM_EXT_VALUE_LINK_PROBIT, LinkFunction::kProbit},
    {Tags::XML_VAL_RM_EXT_VALUE_LINK_CLOGLOG, LinkFunction::kCloglog},
    {Tags::XML_VAL_RM_VALUE_LINK_LOGLOG, LinkFunction::kLoglog},
    {Tags::XML_VAL_RM_VALUE_LINK_CAUCHIT, LinkFunction::kCauchit},
};

// A case is scored by the link alone; the distribution says how the estimates were found.
constexpr Keyword<bool> kDistributions[] = {
    {Tags::XML_VAL_RM_EXT_VALUE_DIST_BINOMIAL, true}, {Tags::XML_VAL_RM_EXT_VALUE_DIST_GAMMA, true},
    {Tags::XML_VAL_RM_EXT_VALUE_DIST_IGAUSS, true},   {Tags::XML_VAL_RM_EXT_VALUE_DIST_MULTINOMIAL, true},
    {Tags::XML_VAL_RM_EXT_VALUE_LINK_NEGBIN, true},   {Tags::XML_VAL_RM_EXT_VALUE_DIST_NORMAL, true},
    {Tags::XML_VAL_RM_EXT_VALUE_DIST_POISSON, true},  {Tags::XML_VAL_RM_EXT_VALUE_DIST_TWEEDIE, true},
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
    FindSetting(fElement, Tags::XML_VAL_NAME_MODELDF).ReadNumber();
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
  const Keyword<ModelType> types[] = {
      {ZENTModelTags::XML_VAL_MT_REGRESS, ModelType::kLinear},
      {ZENTModelTags::XML_VAL_MT_GLM, ModelType::kLinear},
      {ZENTModelTags::XML_VAL_MT_LOGLIN, ModelType::kLogLinear},
      {ZENTModelTags::XML_VAL_MT_MLR, ModelType::kMultinomialLogistic},
      {ZENTModelTags::XML_VAL_MT_CLR, ModelType::kMultinomialLogistic},
  };
  settings.type = ReadKeyword(element, type, types);
  if (settings.type == ModelType::kLogLinear) settings.link.function = LinkFunction::kLog;
  // They say nothing about a case.
  OptionalInteger(element, ZENTModelTags::XML_ATT_RM_N_PARAM.c_str());
  OptionalNumber(element, ZENTModelTags::XML_ATT_RM_MODEL_DF.c_str());
  return settings;
}

}  // namespace KxVeyra_940::Plugin
