// Expressions: reading them into trees and checking functions, parameter counts and types.

#include <memory>
#include <xercesc/dom/DOMElement.hpp>

#include "data/NumericValue.h"
#include "error/Raise.h"
#include "transform/FunctionTable.h"
#include "transform/FunctionTreeImp.h"
#include "transform/TransformationDictionary.h"
#include "translate/DomReader.h"
#include "translate/PMMLModelTags.h"
#include "translate/PMMLTranslator.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {

namespace {

using namespace PMMLModelTags;
using KxXML_940::EqualsAscii;
using KxXML_940::ToUTF8;
using xercesc::DOMElement;

enum ParameterKind : int { kNestedApply = 0, kFieldReference = 1, kConstantParameter = 2 };

constexpr char kNestedName[] = "APPLY";
constexpr char kConstantPrefix[] = "Constant_";
constexpr std::size_t kConstantKindPlace = sizeof kConstantPrefix - 1;
constexpr auto kNoFunction = static_cast<TransformFunction>(kTransformFunctionCount);

struct TreatmentRow {
  const char* text;
  ApplyNodeStats::InvalidValueTreatmentMethod treatment;
};
constexpr TreatmentRow kTreatments[] = {
    {XML_ATT_RETURNINVALID, ApplyNodeStats::kReturnInvalid},
    {XML_ATT_ASIS, ApplyNodeStats::kAsIs},
    {XML_ATT_ASMISSING, ApplyNodeStats::kAsMissing},
};

struct OutlierMethodRow {
  const char* text;
  double number;
};
constexpr OutlierMethodRow kOutlierMethods[] = {
    {XML_VAL_MININGFIELD_OUTLIERS_ASIS, 0},
    {XML_VAL_MININGFIELD_OUTLIERS_ASMISS, 1},
    {XML_VAL_MININGFIELD_OUTLIERS_ASEXTREME, 2},
};

bool ReadsTextConstants(TransformFunction function) {
  return function == TF_MATCHES || function == TF_CONCAT || function == TF_REPLACE;
}

const char* KindOfConstant(const ScoreValue& value) {
  switch (value.GetType()) {
    case ScoreValue::kNumericValueType:
      return "D_";
    case ScoreValue::kDateTimeValueType:
      return "T_";
    case ScoreValue::kStringValueType:
      break;
  }
  return "S_";
}

// What one Apply element says about its parameters, in document order.
struct Parameters {
  std::vector<std::string> names;
  std::vector<int> kinds;
  std::vector<TransformFunction> functions;

  void Add(std::string name, ParameterKind kind, TransformFunction function = kNoFunction) {
    names.push_back(std::move(name));
    kinds.push_back(kind);
    functions.push_back(function);
  }
};

// A constant in the place of a parameter.
std::unique_ptr<ScoreValue> ReadConstant(const PMMLTranslator& translator, const DOMElement& constant,
                                         TransformFunction function) {
  if (ReadsTextConstants(function))
    return std::unique_ptr<ScoreValue>(translator.HandelConstantDefaultStringType(&constant));
  std::unique_ptr<ScoreValue> value(translator.HandelConstant(&constant));
  if (function != TF_OUTLIERHANDLE || value->GetType() != ScoreValue::kStringValueType) return value;
  for (const OutlierMethodRow& row : kOutlierMethods)
    if (value->GetString() == row.text) return std::make_unique<NumericValue>(row.number);
  Raise(MessageId::kUnsupportedValue, {translator.ToUTF8Argument(value->GetString()), XML_VAL_STRING});
}

// Whose results stand where numbers are due, and where texts are.  "greaterOrEqual" and "substring" are in no
// class and count like their neighbours.
bool YieldsNumber(TransformFunction function) {
  return IsInClass(function, kNumericOutputFunction) || IsInClass(function, kMixedOutputFunction) ||
         function == TF_GREATEROREQUAL;
}

bool YieldsText(TransformFunction function) {
  return IsInClass(function, kStringOutputFunction) || IsInClass(function, kMixedOutputFunction) ||
         function == TF_SUBSTRING;
}

[[noreturn]] void RefuseChild(TransformFunction parent, TransformFunction child) {
  Raise(MessageId::kFunctionTypeMismatch, {FunctionName(parent), FunctionName(child)});
}

bool NeedsNumber(ParameterRule rule, std::size_t i) {
  return rule == ParameterRule::kNumbers || (rule == ParameterRule::kTextThenNumbers && i > 0);
}

}  // namespace

void PMMLTranslator::InitFunctionMap() {
  for (const FunctionRow& row : AllFunctions()) {
    fFunctions.emplace(row.name, row.function);
    if (row.alternative != nullptr) fFunctions.emplace(row.alternative, row.function);
  }
}

FunctionTree* PMMLTranslator::HandleApply(DOMElement* apply, const ScoreDictVar* derivedVar,
                                          FunctionTree* parent, const ScoreDictionary* dataDictionary,
                                          const ScoreDictionary* transformations) {
  const XMLCh* const name = RequiredAttribute(*apply, XML_ATT_APPLY_FUNCTION);
  const auto known = fFunctions.find(ToUTF8(name));
  if (known == fFunctions.end()) Raise(MessageId::kUnsupportedValue, {ToUTF8(name), XML_ATT_APPLY_FUNCTION});
  const TransformFunction function = known->second;

  auto owned = std::make_unique<FunctionTreeImp>(true);
  FunctionTreeImp* const node = owned.get();
  ApplyNodeStats stats;
  const auto keep = [node](std::unique_ptr<ScoreValue> value) {
    ScoreValue* const kept = value.release();
    if (kept != nullptr) node->KeepValue(kept);
    return kept;
  };
  if (derivedVar != nullptr) {
    stats.SetRecodeMissValueTo(keep(OptionalValue(*apply, XML_ATT_MISSREPVALUE, *derivedVar)));
    stats.SetDefaultValue(keep(OptionalValue(*apply, XML_ATT_DEFAULTVALUE, *derivedVar)));
  }
  for (const TreatmentRow& row : kTreatments)
    if (EqualsAscii(Attribute(*apply, XML_ATT_INVALIDVALUETREATMENT), row.text))
      stats.SetInvalidValueTreatment(row.treatment);
  stats.SetTransformFunction(function);
  stats.SetNodeID(NextNodeID());
  node->SetNodeStats(stats);
  if (parent != nullptr) parent->Add(owned.release());
  if (node->GetLevel() >= kMaxApplyDepth)
    RaiseWithDetail(MessageId::kProcessingError, {XML_ELE_APPLY},
                    " Nested deeper than " + std::to_string(kMaxApplyDepth) + " elements.");

  Parameters parameters;
  int position = 0;
  ForEachChildElement(apply, [&](const DOMElement& constChild) {
    DOMElement& child = const_cast<DOMElement&>(constChild);
    if (HasTag(child, XML_ELE_APPLY)) {
      const FunctionTree* const nested =
          HandleApply(&child, derivedVar, node, dataDictionary, transformations);
      parameters.Add(kNestedName, kNestedApply, nested->GetNodeStats().GetTransformFunction());
    } else if (HasTag(child, XML_ELE_FIELDREF)) {
      const std::string field = HandleFieldRef(&child, dataDictionary, transformations, nullptr);
      const ScoreDictVar* const variable = FindVariable(field, dataDictionary, transformations);
      std::unique_ptr<ScoreValue> replacement = OptionalValue(child, XML_ATT_MISSREPVALUE, *variable);
      SetLeafNodeStats(field, node, position++, false, replacement.release());
      parameters.Add(field, kFieldReference);
    } else if (HasTag(child, XML_ELE_CONSTANT)) {
      std::unique_ptr<ScoreValue> value = ReadConstant(*this, child, function);
      parameters.Add(std::string(kConstantPrefix) + KindOfConstant(*value), kConstantParameter);
      SetLeafNodeStats({}, node, position++, true, value.release());
    } else if (HasTag(child, XML_ELE_EXTENSION) && GetChildByTag(&child, XML_ELE_ARRAY) != nullptr) {
      stats.AddArray(VerifyDoubleArray(GetArrayNode(&child), 0));
      node->SetNodeStats(stats);
    }
  });

  if (function == TF_IMPUTECATFIELDMISSINGAGAINSTCONTARGET) {
    const auto& arrays = stats.GetArrays();
    const bool isComplete = parameters.kinds == std::vector<int>{kFieldReference, kFieldReference} &&
                            arrays.size() == 2 && arrays[0].size() == arrays[1].size();
    if (!isComplete) Raise(MessageId::kProcessingError, {FunctionName(function)});
  }
  VerifyApplyFunction(parameters.names, parameters.kinds, dataDictionary, transformations, function,
                      parameters.functions, derivedVar);
  return parent != nullptr ? node : owned.release();
}

void PMMLTranslator::SetLeafNodeStats(const std::string& name, FunctionTree* parent, int position,
                                      bool isConstant, ScoreValue* value) {
  auto leaf = std::make_unique<FunctionTreeImp>(false);
  if (value != nullptr) leaf->KeepValue(value);
  ApplyNodeStats stats;
  stats.SetNodeID(NextNodeID());
  stats.SetParameterName(name);
  stats.SetConstNode(isConstant);
  isConstant ? stats.SetValue(value) : stats.SetFieldrefRecodeMissValueTo(value);
  leaf->SetNodeStats(stats);
  parent->Insert(leaf.release(), position);
}

void PMMLTranslator::VerifyApplyFunction(const std::vector<std::string>& names, const std::vector<int>& kinds,
                                         const ScoreDictionary* dataDictionary,
                                         const ScoreDictionary* transformations, TransformFunction function,
                                         const std::vector<TransformFunction>& childFunctions,
                                         const ScoreDictVar* derivedVar) const {
  const FunctionRow* const row = FindFunction(function);
  if (row == nullptr) return;
  if (row->parameterCount >= 0 && names.size() != static_cast<std::size_t>(row->parameterCount))
    Raise(MessageId::kParametersRequired, {std::to_string(row->parameterCount)});

  std::vector<const ScoreDictVar*> fields;
  for (std::size_t i = 0; i < names.size(); ++i)
    fields.push_back(kinds[i] == kFieldReference ? FindVariable(names[i], dataDictionary, transformations)
                                                 : nullptr);
  const bool isRecast = function == TF_RECAST_TO_ORDINAL || function == TF_RECAST_TO_SCALE;
  if (function == TF_VALUE || function == TF_SYSMIS || isRecast) {
    if (kinds[0] != kFieldReference) Raise(MessageId::kRequiredIn, {XML_ELE_FIELDREF, XML_ELE_APPLY});
    const bool isOfType = fields[0] == nullptr || derivedVar == nullptr || function == TF_SYSMIS ||
                          fields[0]->GetVarType() == derivedVar->GetVarType();
    if (!isOfType)
      Raise(MessageId::kConflictingVariables,
            {ToUTF8Argument(names[0]), ToUTF8Argument(derivedVar->GetName())});
  }
  const auto fieldAt = [&](std::size_t i) { return i < fields.size() ? fields[i] : nullptr; };
  const bool isImputation = function == TF_IMPUTECATFIELDMISSINGAGAINSTCONTARGET;
  const std::size_t exempt = isImputation ? ImputedParameter(fieldAt(0), fieldAt(1)) : names.size();
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (row->parameters == ParameterRule::kAnything || i == exempt) continue;
    if (kinds[i] != kNestedApply) {
      VerifyOneElem(function, NeedsNumber(row->parameters, i), kinds[i] == kConstantParameter, names[i],
                    dataDictionary, transformations);
    } else if (row->parameters == ParameterRule::kTextThenNumbers && i > 0) {
      // The position and the length of a part of a text are numbers like those of any numeric function.
      if (!YieldsNumber(childFunctions[i])) RefuseChild(function, childFunctions[i]);
    } else {
      VerifyParentAndChildFunction(function, childFunctions[i]);
    }
  }
}

void PMMLTranslator::VerifyParentAndChildFunction(TransformFunction parent, TransformFunction child) const {
  const FunctionRow* const row = FindFunction(parent);
  const ParameterRule rule = row == nullptr ? ParameterRule::kAnything : row->parameters;
  switch (rule) {
    case ParameterRule::kAnything:
      return;
    case ParameterRule::kNumbers:
      if (YieldsNumber(child)) return;
      break;
    case ParameterRule::kTexts:
    case ParameterRule::kTextThenNumbers:
      if (YieldsText(child)) return;
      break;
  }
  RefuseChild(parent, child);
}

void PMMLTranslator::VerifyOneElem(TransformFunction function, bool numericExpected, bool isConstant,
                                   const std::string& name, const ScoreDictionary* dataDictionary,
                                   const ScoreDictionary* transformations) const {
  bool isNumeric = true;
  if (isConstant) {
    const char kind = name.size() > kConstantKindPlace ? name[kConstantKindPlace] : 'D';
    isNumeric = kind == 'D' || kind == 'T';
  } else if (const ScoreDictVar* const variable = FindVariable(name, dataDictionary, transformations)) {
    isNumeric = variable->GetVarType() != ScoreDictVar::STRING_VAR;
  }
  if (isNumeric != numericExpected)
    Raise(MessageId::kFunctionVariableTypeMismatch, {ToString(function), ToUTF8Argument(name)});
}

bool PMMLTranslator::IsArithmeticFunction(TransformFunction f) { return IsInClass(f, kArithmeticFunction); }
bool PMMLTranslator::IsMathematicsFunction(TransformFunction f) { return IsInClass(f, kMathematicsFunction); }
bool PMMLTranslator::IsStatisticFunction(TransformFunction f) { return IsInClass(f, kStatisticFunction); }
bool PMMLTranslator::IsDateTimeFunction(TransformFunction f) { return IsInClass(f, kDateTimeFunction); }
bool PMMLTranslator::IsStringFunction(TransformFunction f) { return IsInClass(f, kStringFunction); }
bool PMMLTranslator::IsLogicFunction(TransformFunction f) { return IsInClass(f, kLogicFunction); }
bool PMMLTranslator::IsMixInputFunction(TransformFunction f) { return IsInClass(f, kMixedInputFunction); }
bool PMMLTranslator::IsNumericFunction(TransformFunction f) { return IsInClass(f, kNumericInputFunction); }
bool PMMLTranslator::IsInputNumericFunction(TransformFunction f) { return IsNumericFunction(f); }
bool PMMLTranslator::IsInputStringFunction(TransformFunction f) { return IsInClass(f, kStringInputFunction); }
bool PMMLTranslator::IsOutputNumericFunction(TransformFunction f) {
  return IsInClass(f, kNumericOutputFunction);
}
bool PMMLTranslator::IsOutputStringFunction(TransformFunction f) {
  return IsInClass(f, kStringOutputFunction);
}
bool PMMLTranslator::IsMixOutputFunction(TransformFunction f) { return IsInClass(f, kMixedOutputFunction); }

std::string PMMLTranslator::ToString(TransformFunction function) const { return FunctionName(function); }

}  // namespace KxVeyra_940
