// Derived fields: how they are described, copied and shown.

#include "transform/TransformVar.h"

#include <algorithm>
#include <cmath>
#include <ostream>

#include "transform/TransformVarInternal.h"
#include "vocabulary/PMMLModelTags.h"

namespace KxVeyra_940 {

namespace {

struct OutlierRow {
  const char* text;
  TransformVar::OutlierTreatment treatment;
};
constexpr OutlierRow kOutlierTreatments[] = {
    {PMMLModelTags::XML_VAL_MININGFIELD_OUTLIERS_ASIS, TransformVar::kAsIs},
    {PMMLModelTags::XML_VAL_MININGFIELD_OUTLIERS_ASMISS, TransformVar::kAsMissingValues},
    {PMMLModelTags::XML_VAL_MININGFIELD_OUTLIERS_ASEXTREME, TransformVar::kAsExtremeValues},
};

// By expression.
constexpr const char* kDisplayTexts[] = {"Constant\n",   "FieldRef\n",  "NormContinuous\n", "NormDiscrete\n",
                                         "Discretize\n", "MapValues\n", "Apply\n"};

std::string BoundText(const ScoreValue* bound) { return bound == nullptr ? "" : bound->GetString(); }

bool IsInfinite(const ScoreValue* bound) { return bound == nullptr || std::isinf(bound->GetDouble()); }

// "[0, 10)"
std::string IntervalText(const ScoreValueRange& range) {
  return (range.GetLowEnd() ? "[" : "(") + BoundText(range.GetMin()) + ", " + BoundText(range.GetMax()) +
         (range.GetHighEnd() ? "]" : ")");
}

// "0 <= age < 10"; an end that is infinite is left out.
std::string NamedIntervalText(const ScoreValueRange& range, const std::string& name) {
  std::string text = name;
  if (!IsInfinite(range.GetMin()))
    text = BoundText(range.GetMin()) + (range.GetLowEnd() ? " <= " : " < ") + text;
  if (!IsInfinite(range.GetMax())) text += (range.GetHighEnd() ? " <= " : " < ") + BoundText(range.GetMax());
  return text;
}

}  // namespace

TransformVar::TransformVar(const std::string& name, VariableType type)
    : DictVar(name, type), fState(std::make_unique<State>()) {}

TransformVar::TransformVar(const TransformVar& other)
    : DictVar(other),
      fFieldName(other.fFieldName),
      fExpression(other.fExpression),
      fBins(other.fBins),
      fIntervalOfBin(other.fIntervalOfBin),
      fNamedIntervalOfBin(other.fNamedIntervalOfBin),
      fSlopes(other.fSlopes),
      fIntercepts(other.fIntercepts),
      fOutlierTreatment(other.fOutlierTreatment),
      fOrigs(other.fOrigs),
      fNorms(other.fNorms),
      fAreOrigsAscending(other.fAreOrigsAscending),
      fLowestOrig(other.fLowestOrig),
      fHighestOrig(other.fHighestOrig),
      fEncodingMap(other.fEncodingMap),
      fConstString(other.fConstString),
      fRoot(other.fRoot),
      fRecodeMissValueTo(other.fRecodeMissValueTo),
      fRecodeDefaultValue(other.fRecodeDefaultValue),
      fRecodeSysmisValue(other.fRecodeSysmisValue),
      fRecodeElseCopy(other.fRecodeElseCopy),
      fRecodeMissingCopy(other.fRecodeMissingCopy),
      fRecodeIntervalCopy(other.fRecodeIntervalCopy),
      fMapValues(other.fMapValues),
      fLagCount(other.fLagCount),
      fBlockVariables(other.fBlockVariables),
      fBlockNames(other.fBlockNames),
      fState(std::make_unique<State>()) {
  if (fMapValues) fMapValues->SetDerivedVar(this);
  fState->history = other.fState->history;
  fState->blockHistories = other.fState->blockHistories;
  fState->lagCase = other.fState->lagCase;
  if (other.fState->own != nullptr) fState->own.reset(other.fState->own->Clone());
  fState->isTextMissing = other.fState->isTextMissing;
}

TransformVar::~TransformVar() = default;

ScoreDictVar* TransformVar::Clone() const { return new TransformVar(*this); }

bool TransformVar::IsDerivedVariable() const { return true; }

void TransformVar::Display(std::ostream& out) const {
  DictVar::Display(out);
  out << "Start Display Parameters: \n\n"
      << "EXPRESSION: ";
  if (static_cast<std::size_t>(fExpression) < std::size(kDisplayTexts)) out << kDisplayTexts[fExpression];
  if (fExpression == TransformationDictionary::TE_APPLY && fRoot) {
    fRoot->Display(out);
    TraverseTree(fRoot.Get(), out);
  }
  if (!fBins.empty()) out << "Bin values\n";
  for (const Bin& bin : fBins) {
    bin.range->Display(out);
    out << (bin.value ? bin.value->GetString() : PMMLModelTags::XML_ATT_TRAN_EXT_NAME_INTERVALCOPY) << '\n';
  }
  out << "Original values and its encoded values\n";
  for (const auto& [source, encoded] : fEncodingMap)
    out << BoundText(source.Get()) << "; " << BoundText(encoded.Get()) << '\n';
  out << "End one TransformVar display\n\n";
}

void TransformVar::AddFieldNameAndTransExpression(const std::string& name, TransExpression expression) {
  fFieldName = name;
  fExpression = expression;
  fState->isBound = false;
}

void TransformVar::SetRoot(FunctionTree* root) {
  fState->program.reset();
  fState->isBound = false;
  fRoot.Replace(root);
}

void TransformVar::AddLinearNorm(double orig, double norm) {
  fAreOrigsAscending = fAreOrigsAscending && (fOrigs.empty() || orig >= fOrigs.back());
  fLowestOrig = fOrigs.empty() ? orig : std::min(fLowestOrig, orig);
  fHighestOrig = fOrigs.empty() ? orig : std::max(fHighestOrig, orig);
  fOrigs.push_back(orig);
  fNorms.push_back(norm);
}

void TransformVar::AddNormInfo(double slope, double intercept) {
  fSlopes.push_back(slope);
  fIntercepts.push_back(intercept);
}

void TransformVar::SetOutlierTreatMent(const std::string& text) {
  for (const OutlierRow& row : kOutlierTreatments)
    if (text == row.text) fOutlierTreatment = row.treatment;
}

void TransformVar::AddEncodingMap(ScoreValue* source, ScoreValue* encoded) {
  fEncodingMap.push_back({OwnedPart<ScoreValue>(source), OwnedPart<ScoreValue>(encoded)});
}

void TransformVar::AddBinningValue(ScoreValueRange* range, ScoreValue* value, const std::string& fieldName) {
  fBins.push_back({OwnedPart<ScoreValueRange>(range), OwnedPart<ScoreValue>(value)});
  fState->isBound = false;
  if (range == nullptr || value == nullptr) return;
  fIntervalOfBin.emplace(value->GetString(), IntervalText(*range));
  fNamedIntervalOfBin.emplace(value->GetString(), NamedIntervalText(*range, fieldName));
}

void TransformVar::SetMapValues(MapValues* map) { fMapValues.Replace(map); }

void TransformVar::SetLags(int n, const std::vector<const ScoreDictVar*>& blockVariables) {
  fLagCount = n;
  fBlockVariables = blockVariables;
  fBlockNames.clear();
  for (const ScoreDictVar* variable : blockVariables) fBlockNames.push_back(variable->GetName());
  const auto count = static_cast<std::size_t>(std::max(n, 1));
  fState->history = ValueHistory(count);
  fState->blockHistories.assign(blockVariables.size(), ValueHistory(count));
  fState->isBound = false;
}

void TransformVar::SetRecodeMissValueTo(ScoreValue* value) {
  fRecodeMissValueTo.Replace(value);
  fRecodeMissingCopy = false;
}

void TransformVar::SetRecodeDefaultValue(ScoreValue* value) {
  fRecodeDefaultValue.Replace(value);
  fRecodeElseCopy = false;
}

void TransformVar::SetRecodeSysmisValue(ScoreValue* value) { fRecodeSysmisValue.Replace(value); }

void TransformVar::SetRecodeElseCopy(bool copy) {
  fRecodeElseCopy = copy;
  fRecodeDefaultValue.Replace(nullptr);
}

void TransformVar::SetRecodeMissingCopy(bool copy) {
  fRecodeMissingCopy = copy;
  fRecodeMissValueTo.Replace(nullptr);
}

std::string TransformVar::GetOrigIntervalForBinningValue(const std::string& binValue,
                                                         bool withFieldName) const {
  const auto& intervals = withFieldName ? fNamedIntervalOfBin : fIntervalOfBin;
  const auto found = intervals.find(binValue);
  return found == intervals.end() ? std::string() : found->second;
}

std::vector<std::string> TransformVar::GetReads() const {
  std::vector<std::string> names;
  if (!fFieldName.empty()) names.push_back(fFieldName);
  names.insert(names.end(), fBlockNames.begin(), fBlockNames.end());
  if (fMapValues) fMapValues->AppendReads(names);
  std::vector<FunctionTree*> open;
  if (fRoot) open.push_back(fRoot.Get());
  while (!open.empty()) {
    FunctionTree* const node = open.back();
    open.pop_back();
    const std::string& name = node->GetNodeStats().GetParameterName();
    if (!name.empty()) names.push_back(name);
    for (FunctionTree* child : node->Children())
      if (child != nullptr) open.push_back(child);
  }
  return names;
}

}  // namespace KxVeyra_940
