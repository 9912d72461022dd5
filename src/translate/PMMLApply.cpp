// Expressions: reading them into trees and checking functions, parameter counts and types.

#include <memory>
#include <xercesc/dom/DOMElement.hpp>

#include "data/NumericValue.h"
#include "error/Raise.h"
#include "transform/FunctionTable.h"
#include "transform/FunctionTreeImp.h"
#include "transform/TransformationDictionary.h"
#include "translate/DomReader.h"
#include "translate/PMMLTranslator.h"
#include "vocabulary/PMMLModelTags.h"
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

// Reads one Apply element, kind by kind of its children.
class ApplyReader {
 public:
  ApplyReader(PMMLTranslator& translator, const ScoreDictVar* derivedVar,
              const ScoreDictionary* dataDictionary, const ScoreDictionary* transformations)
      : fTranslator(translator),
        fDerivedVar(derivedVar),
        fDataDictionary(dataDictionary),
        fTransformations(transformations) {}

  // The new node, below `parent` when there is one, else in `owned`.
  FunctionTree* Read(const DOMElement& apply, TransformFunction function, const std::string& nodeID,
                     FunctionTree* parent, std::unique_ptr<FunctionTreeImp>& owned);

 private:
  void ReadAttributes(const DOMElement& apply, const std::string& nodeID);
  void ReadChild(const DOMElement& child);
  void AddNested(const DOMElement& apply);
  void AddField(const DOMElement& fieldRef);
  void AddConstant(const DOMElement& constant);
  void AddArray(const DOMElement& extension);
  void VerifyImputation() const;
  ScoreValue* Keep(std::unique_ptr<ScoreValue> value);

  PMMLTranslator& fTranslator;
  const ScoreDictVar* fDerivedVar;
  const ScoreDictionary* fDataDictionary;
  const ScoreDictionary* fTransformations;
  TransformFunction fFunction = kNoFunction;
  FunctionTreeImp* fNode = nullptr;
  ApplyNodeStats fStats;  // of the node
  Parameters fParameters;
  int fPosition = 0;  // of the next field or constant
};

FunctionTree* ApplyReader::Read(const DOMElement& apply, TransformFunction function,
                                const std::string& nodeID, FunctionTree* parent,
                                std::unique_ptr<FunctionTreeImp>& owned) {
  fFunction = function;
  owned = std::make_unique<FunctionTreeImp>(true);
  fNode = owned.get();
  ReadAttributes(apply, nodeID);
  if (parent != nullptr) parent->Add(owned.release());
  if (fNode->GetLevel() >= PMMLTranslator::kMaxApplyDepth)
    Raise(MessageId::kProcessingError, {XML_ELE_APPLY},
          " Nested deeper than " + std::to_string(PMMLTranslator::kMaxApplyDepth) + " elements.");
  ForEachChildElement(&apply, [this](const DOMElement& child) { ReadChild(child); });
  if (fFunction == TF_IMPUTECATFIELDMISSINGAGAINSTCONTARGET) VerifyImputation();
  fTranslator.VerifyApplyFunction(fParameters.names, fParameters.kinds, fDataDictionary, fTransformations,
                                  fFunction, fParameters.functions, fDerivedVar);
  return fNode;
}

ScoreValue* ApplyReader::Keep(std::unique_ptr<ScoreValue> value) {
  ScoreValue* const kept = value.release();
  if (kept != nullptr) fNode->KeepValue(kept);
  return kept;
}

void ApplyReader::ReadAttributes(const DOMElement& apply, const std::string& nodeID) {
  if (fDerivedVar != nullptr) {
    fStats.SetRecodeMissValueTo(Keep(fTranslator.OptionalValue(apply, XML_ATT_MISSREPVALUE, *fDerivedVar)));
    fStats.SetDefaultValue(Keep(fTranslator.OptionalValue(apply, XML_ATT_DEFAULTVALUE, *fDerivedVar)));
  }
  for (const TreatmentRow& row : kTreatments)
    if (EqualsAscii(Attribute(apply, XML_ATT_INVALIDVALUETREATMENT), row.text))
      fStats.SetInvalidValueTreatment(row.treatment);
  fStats.SetTransformFunction(fFunction);
  fStats.SetNodeID(nodeID);
  fNode->SetNodeStats(fStats);
}

void ApplyReader::ReadChild(const DOMElement& child) {
  if (HasTag(child, XML_ELE_APPLY)) return AddNested(child);
  if (HasTag(child, XML_ELE_FIELDREF)) return AddField(child);
  if (HasTag(child, XML_ELE_CONSTANT)) return AddConstant(child);
  if (HasTag(child, XML_ELE_EXTENSION)) return AddArray(child);
}

void ApplyReader::AddNested(const DOMElement& apply) {
  // The documented entry takes elements that it does not change.
  const FunctionTree* const nested = fTranslator.HandleApply(const_cast<DOMElement*>(&apply), fDerivedVar,
                                                             fNode, fDataDictionary, fTransformations);
  fParameters.Add(kNestedName, kNestedApply, nested->GetNodeStats().GetTransformFunction());
}

void ApplyReader::AddField(const DOMElement& fieldRef) {
  const std::string field = fTranslator.HandleFieldRef(const_cast<DOMElement*>(&fieldRef), fDataDictionary,
                                                       fTransformations, nullptr);
  const ScoreDictVar* const variable = PMMLTranslator::FindVariable(field, fDataDictionary, fTransformations);
  std::unique_ptr<ScoreValue> replacement =
      fTranslator.OptionalValue(fieldRef, XML_ATT_MISSREPVALUE, *variable);
  fTranslator.SetLeafNodeStats(field, fNode, fPosition++, false, replacement.release());
  fParameters.Add(field, kFieldReference);
}

void ApplyReader::AddConstant(const DOMElement& constant) {
  std::unique_ptr<ScoreValue> value = ReadConstant(fTranslator, constant, fFunction);
  fParameters.Add(std::string(kConstantPrefix) + KindOfConstant(*value), kConstantParameter);
  fTranslator.SetLeafNodeStats({}, fNode, fPosition++, true, value.release());
}

void ApplyReader::AddArray(const DOMElement& extension) {
  if (fTranslator.GetChildByTag(&extension, XML_ELE_ARRAY) == nullptr) return;
  fStats.AddArray(fTranslator.VerifyDoubleArray(fTranslator.GetArrayNode(&extension), 0));
  fNode->SetNodeStats(fStats);
}

void ApplyReader::VerifyImputation() const {
  const auto& arrays = fStats.GetArrays();
  const bool isComplete = fParameters.kinds == std::vector<int>{kFieldReference, kFieldReference} &&
                          arrays.size() == 2 && arrays[0].size() == arrays[1].size();
  if (!isComplete) Raise(MessageId::kProcessingError, {FunctionName(fFunction)});
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
  std::unique_ptr<FunctionTreeImp> owned;
  ApplyReader reader(*this, derivedVar, dataDictionary, transformations);
  FunctionTree* const node = reader.Read(*apply, known->second, NextNodeID(), parent, owned);
  static_cast<void>(owned.release());
  return node;
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
