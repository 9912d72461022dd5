// Predicates of tree nodes: each becomes a predicate whose split sends what satisfies it to child 0.

#include <algorithm>
#include <charconv>
#include <memory>
#include <xercesc/dom/DOMElement.hpp>

#include "data/DateTimeValue.h"
#include "data/NumericValue.h"
#include "data/Range.h"
#include "data/StringValue.h"
#include "data/ValueIndex.h"
#include "error/Raise.h"
#include "predicate/CompoundPredicate.h"
#include "predicate/ConstantPredicates.h"
#include "predicate/DiscreteSplit.h"
#include "predicate/ScaleSplit.h"
#include "predicate/SetPredicate.h"
#include "predicate/SimplePredicate.h"
#include "translate/DomReader.h"
#include "translate/PMMLModelTags.h"
#include "translate/PMMLTranslator.h"
#include "veyra/VYException.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {
namespace {

using namespace PMMLModelTags;
using KxXML_940::EqualsAscii;
using KxXML_940::ToUTF8;
using xercesc::DOMElement;

constexpr int kHolds = 0;  // the child of what satisfies a predicate
constexpr double kInfinity = NumericValue::gInfinity;

// Which bounds of a comparison its value gives, and whether the value itself is inside.
struct ComparisonRow {
  const char* text;
  bool isLow;
  bool isHigh;
  bool isClosed;
};
constexpr ComparisonRow kComparisons[] = {
    {XML_VAL_OPERATOR_GREATERTHAN, true, false, false}, {XML_VAL_OPERATOR_GREATEROREQUAL, true, false, true},
    {XML_VAL_OPERATOR_LESSTHAN, false, true, false},    {XML_VAL_OPERATOR_LESSOREQUAL, false, true, true},
    {XML_VAL_OPERATOR_EQUAL, true, true, true},         {XML_VAL_OPERATOR_NOTEQUAL, true, true, false},
};

const ComparisonRow* FindComparison(const XMLCh* text) {
  for (const ComparisonRow& row : kComparisons) {
    if (EqualsAscii(text, row.text)) return &row;
  }
  return nullptr;
}

struct BooleanOperatorRow {
  const char* text;
  ScorePredicate::CompoundBoolOperator value;
};
constexpr BooleanOperatorRow kBooleanOperators[] = {
    {XML_VAL_OR, ScorePredicate::kOr},
    {XML_VAL_AND, ScorePredicate::kAnd},
    {XML_VAL_XOR, ScorePredicate::kXor},
    {XML_VAL_SURROGATE, ScorePredicate::kSurrogate},
};

ScorePredicate::CompoundBoolOperator ReadBooleanOperator(const DOMElement& element) {
  const XMLCh* text = Attribute(element, XML_ATT_BOOLEANOPERATOR);
  for (const BooleanOperatorRow& row : kBooleanOperators) {
    if (EqualsAscii(text, row.text)) return row.value;
  }
  Raise(MessageId::kInvalidAttributeValueIn,
        {ToUTF8(text), XML_ATT_BOOLEANOPERATOR, XML_ELE_COMPOUNDPREDICATE});
}

bool IsNumber(const std::string& text) {
  try {
    BaseTranslator::VerifyDouble(text);
    return true;
  } catch (const VYException&) {
    return false;
  }
}

bool IsString(const ScoreDictVar& variable) { return variable.GetVarType() == ScoreDictVar::STRING_VAR; }

std::unique_ptr<ScoreValue> ValueOf(const ScoreDictVar& variable, const std::string& text) {
  if (IsString(variable)) return std::make_unique<StringValue>(text);
  return std::make_unique<NumericValue>(text);
}

// What is no number is no value of a field of numbers, although it would read as 0.
bool IsValid(const ScoreDictVar& variable, const std::string& text, const ScoreValue& value) {
  return (IsString(variable) || IsNumber(text)) && variable.IsValidValue(&value);
}

// Fields that the document gives no values learn them from their predicates.
bool LearnsCategories(const ScoreDictVar& variable) {
  return variable.IsEmptyCateValues() || variable.GetValueLabels() == nullptr;
}

// The value, or its code when the variable has an encoder.
void Put(ScoreDictVar& variable, DiscreteSplit& split, const ScoreValue& value, int child) {
  if (ScoreEncoder* encoder = variable.GetEncoder()) {
    split.PutSplit(static_cast<double>(encoder->Encode(&value)), child);
  } else {
    split.PutSplit(value.Clone(), child);
  }
}

bool HasEmptyCategory(const ScoreDictVar& variable) {
  if (!IsString(variable) || variable.GetValueLabels() == nullptr) return false;
  const auto& labels = variable.GetValueLabels()->GetAllValueLabels();
  return std::any_of(labels.begin(), labels.end(),
                     [](const ScoreValueLabel* label) { return label->GetValue()->GetString().empty(); });
}

// What a "SimplePredicate" asks for.
struct Question {
  enum Kind { kMissing, kNotMissing, kComparison };
  Kind kind;
  const XMLCh* predicateOperator;
  const XMLCh* value;  // null when it is absent
};

Question ReadQuestion(const DOMElement& element, const ScoreDictVar& variable) {
  Question question{Question::kComparison, RequiredAttribute(element, XML_ATT_OPERATOR),
                    FindAttribute(element, XML_ATT_VALUE)};
  const bool isMissing = EqualsAscii(question.predicateOperator, XML_VAL_OPERATOR_ISMISSING);
  const bool isNotMissing = EqualsAscii(question.predicateOperator, XML_VAL_OPERATOR_ISNOTMISSING);
  if (isMissing || isNotMissing) {
    if (question.value != nullptr) {
      Raise(MessageId::kConflictingAttributes, {XML_ATT_VALUE, ToUTF8(question.predicateOperator)});
    }
    question.kind = isMissing ? Question::kMissing : Question::kNotMissing;
  } else if (question.value != nullptr && IsEmpty(question.value) && !HasEmptyCategory(variable)) {
    // The empty value is no value, unless the variable has it as a category.
    if (!EqualsAscii(question.predicateOperator, XML_VAL_OPERATOR_EQUAL)) {
      Raise(MessageId::kInvalidNullStringValue, {XML_ATT_OPERATOR, XML_VAL_OPERATOR_EQUAL});
    }
    question.kind = Question::kMissing;
  }
  return question;
}

// What the reader of either split reports; a question for a missing value is all in the split then.
void TellQuestion(const BaseTranslator& translator, const Question& question, ScoreSplitVar& split,
                  std::string& predicateOperator, bool& isMissing, std::string& value) {
  predicateOperator = translator.ToString(question.predicateOperator);
  value = translator.ToString(question.value);
  isMissing = question.kind == Question::kMissing;
  if (isMissing) split.SetMissvalMap(kHolds);
}

// The number that a comparison names: a date or time may be written as such.
double NumberOf(const ScoreDictVar& variable, const XMLCh* text) {
  if (variable.GetVarType() == ScoreDictVar::kDATETIME_VAR && !IsEmpty(text)) {
    const DateTimeValue value(ToUTF8(text), variable.GetDateTimeType());
    const bool isText = variable.GetDateTimeType() <= ScoreDictVar::kDateTime;
    if (isText && !value.IsSystemMissingValue()) return value.GetDouble();
  }
  return BaseTranslator::VerifyDouble(text);
}

// What a comparison with the number lets pass.
void FindBounds(double number, const XMLCh* predicateOperator, double& low, double& high, bool& closed) {
  const ComparisonRow* row = FindComparison(predicateOperator);
  if (row == nullptr) Raise(MessageId::kUnsupportedValue, {ToUTF8(predicateOperator), XML_ATT_OPERATOR});
  low = row->isLow ? number : -kInfinity;
  high = row->isHigh ? number : kInfinity;
  closed = row->isClosed;
}

void PutRange(ScaleSplit& split, double low, double high, bool closed) {
  split.PutSplit(new Range(low, high, closed && low != -kInfinity, closed && high != kInfinity), kHolds);
}

// The listed values that equal none of the given ones.
std::vector<const ScoreValue*> Remaining(const ScoreDictVar& variable,
                                         const std::vector<std::string>& texts) {
  std::vector<std::unique_ptr<ScoreValue>> given;
  ValueIndex index;
  for (const std::string& text : texts) {
    if (!IsString(variable) && !IsNumber(text)) continue;
    index.Append(given.emplace_back(ValueOf(variable, text)).get());
  }
  std::vector<const ScoreValue*> remaining;
  if (variable.GetValueLabels() == nullptr) return remaining;
  for (const ScoreValueLabel* label : variable.GetValueLabels()->GetAllValueLabels()) {
    const ScoreValue& value = *label->GetValue();
    const int found = index.FindFirst(value, [&](int position) {
      return value.Equal(given[static_cast<std::size_t>(position)].get(), variable.GetNoSpaceTrim(),
                         variable.GetEmptyStringOK());
    });
    if (found < 0) remaining.push_back(&value);
  }
  return remaining;
}

// Six digits, as numbers are shown elsewhere, would not read back as the value.
std::string ExactText(const ScoreValue& value) {
  if (value.GetType() != ScoreValue::kNumericValueType) return value.GetString();
  char text[32];
  return std::string(text, std::to_chars(text, text + sizeof text, value.GetDouble()).ptr);
}

// Collects the values of a set predicate in its split.
class SetReader {
 public:
  SetReader(ScoreDictVar& variable, DiscreteSplit& split, std::vector<double>& codes)
      : fVariable(variable), fSplit(split), fCodes(codes) {}

  void Add(const ScoreValue& value) {
    ScoreEncoder* encoder = fVariable.GetEncoder();
    if (encoder == nullptr) {
      fSplit.PutSplit(value.Clone(), kHolds);
      return;
    }
    const bool isNumber = fVariable.GetMLevel() == ScoreDictVar::kOrdinal &&
                          fVariable.GetVarType() == ScoreDictVar::kNUMERIC_VAR;
    fCodes.push_back(isNumber ? value.GetDouble() : encoder->Encode(&value));
    fSplit.PutSplit(fCodes.back(), kHolds);
  }

 private:
  ScoreDictVar& fVariable;
  DiscreteSplit& fSplit;
  std::vector<double>& fCodes;
};

bool IsArrayType(const std::string& type) {
  return type == XML_VAL_ARRAY_TYPE_STRING || type == XML_VAL_ARRAY_TYPE_REAL ||
         type == XML_VAL_ARRAY_TYPE_INT;
}

// The children of a compound predicate, read one after the other.
class CompoundReader {
 public:
  CompoundReader(const PMMLTranslator& translator, ScoreDictionary& dictionary,
                 ScoreDictionary* transformations, bool ordinalAsScale)
      : fTranslator(translator),
        fDictionary(dictionary),
        fTransformations(transformations),
        fOrdinalAsScale(ordinalAsScale) {}

  std::unique_ptr<ScorePredicate> Read(const DOMElement& element, int depth) const {
    if (depth > PMMLTranslator::kMaxCompoundDepth) {
      RaiseWithDetail(
          MessageId::kProcessingError, {XML_ELE_COMPOUNDPREDICATE},
          " It is nested more than " + std::to_string(PMMLTranslator::kMaxCompoundDepth) + " deep.");
    }
    const ScorePredicate::CompoundBoolOperator boolOperator = ReadBooleanOperator(element);
    bool droppedTrue = false;
    bool droppedFalse = false;
    std::vector<std::unique_ptr<ScorePredicate>> children;
    ForEachChildElement(&element, [&](const DOMElement& child) {
      if (boolOperator == ScorePredicate::kAnd && HasTag(child, XML_ELE_TRUE)) {
        droppedTrue = true;
      } else if (boolOperator == ScorePredicate::kOr && HasTag(child, XML_ELE_FALSE)) {
        droppedFalse = true;
      } else if (std::unique_ptr<ScorePredicate> predicate = ReadChild(child, depth)) {
        children.push_back(std::move(predicate));
      }
    });
    if (children.size() == 1) return std::move(children.front());
    if (children.empty()) {
      if (droppedTrue) return std::make_unique<TruePredicate>();
      if (droppedFalse) return std::make_unique<FalsePredicate>();
      return nullptr;
    }
    auto compound = std::make_unique<CompoundPredicate>(boolOperator);
    for (auto& child : children) compound->AddPredicate(child.release());
    return compound;
  }

 private:
  // Null for an element that is no predicate and for one that gives none.
  std::unique_ptr<ScorePredicate> ReadChild(const DOMElement& child, int depth) const {
    if (HasTag(child, XML_ELE_PREDICATE)) {
      return std::unique_ptr<ScorePredicate>(
          fTranslator.ParsePredicate(&child, &fDictionary, fTransformations, fOrdinalAsScale));
    }
    if (HasTag(child, XML_ELE_SETPREDICATE)) {
      return std::unique_ptr<ScorePredicate>(
          fTranslator.ParseSetPredicate(&child, &fDictionary, fTransformations));
    }
    if (HasTag(child, XML_ELE_COMPOUNDPREDICATE)) return Read(child, depth + 1);
    if (HasTag(child, XML_ELE_TRUE)) return std::make_unique<TruePredicate>();
    if (HasTag(child, XML_ELE_FALSE)) return std::make_unique<FalsePredicate>();
    return nullptr;
  }

  const PMMLTranslator& fTranslator;
  ScoreDictionary& fDictionary;
  ScoreDictionary* fTransformations;
  bool fOrdinalAsScale;
};

}  // namespace

ScorePredicate* PMMLTranslator::ParseCompoundPredicate(const DOMElement* node, ScoreDictionary* dictionary,
                                                       ScoreDictionary* transformations,
                                                       bool ordinalAsScale) const {
  return CompoundReader(*this, *dictionary, transformations, ordinalAsScale).Read(*node, 1).release();
}

SimplePredicate* PMMLTranslator::ParsePredicate(const DOMElement* node, ScoreDictionary* dictionary,
                                                ScoreDictionary* transformations, bool ordinalAsScale) const {
  const XMLCh* name = RequiredAttribute(*node, XML_ATT_FIELD);
  auto& variable = const_cast<ScoreDictVar&>(RequiredVariable(name, dictionary, transformations));
  const bool isScale =
      variable.GetMLevel() == ScoreDictVar::kContinuous ||
      (variable.GetMLevel() == ScoreDictVar::kOrdinal && !IsString(variable) && ordinalAsScale);
  std::string predicateOperator;
  std::string value;
  bool isMissing = false;
  auto predicate = std::make_unique<SimplePredicate>();
  if (isScale) {
    predicate->SetSplit(HandleNodeScaleSplit(node, &variable, predicateOperator, isMissing, value));
  } else {
    predicate->SetSplit(HandleNodeDiscreteSplit(node, &variable, predicateOperator, isMissing, value));
  }
  predicate->SetPredicateValue(value);
  predicate->SetValueToMissing(isMissing);
  predicate->SetPredicateOperator(predicateOperator);
  return predicate.release();
}

SetPredicate* PMMLTranslator::ParseSetPredicate(const DOMElement* node, ScoreDictionary* dictionary,
                                                ScoreDictionary* transformations) const {
  const XMLCh* name = RequiredAttribute(*node, XML_ATT_FIELD);
  auto& variable = const_cast<ScoreDictVar&>(RequiredVariable(name, dictionary, transformations));
  if (variable.GetMLevel() == ScoreDictVar::kContinuous) return nullptr;
  std::string setOperator;
  std::vector<double> arrayData;
  auto predicate = std::make_unique<SetPredicate>();
  predicate->SetSplit(HandleArrayDiscreteSplit(node, &variable, setOperator, arrayData));
  predicate->SetArrayData(arrayData);
  predicate->SetPredicateOperator(setOperator);
  return predicate.release();
}

ScaleSplit* PMMLTranslator::HandleNodeScaleSplit(const DOMElement* node, const ScoreDictVar* variable,
                                                 std::string& predicateOperator, bool& isMissing,
                                                 std::string& value) const {
  auto split = std::make_unique<ScaleSplit>(variable);
  if (!HasTag(*node, XML_ELE_PREDICATE)) return split.release();
  const Question question = ReadQuestion(*node, *variable);
  TellQuestion(*this, question, *split, predicateOperator, isMissing, value);
  if (isMissing) return split.release();
  if (question.kind == Question::kNotMissing) {
    PutRange(*split, -kInfinity, kInfinity, false);
  } else {
    double low = 0;
    double high = 0;
    bool closed = false;
    FindBounds(NumberOf(*variable, question.value), question.predicateOperator, low, high, closed);
    if (EqualsAscii(question.predicateOperator, XML_VAL_OPERATOR_NOTEQUAL)) {
      PutRange(*split, -kInfinity, high, false);
      PutRange(*split, low, kInfinity, false);
    } else {
      PutRange(*split, low, high, closed);
    }
  }
  return split.release();
}

void PMMLTranslator::GetScaleSplitValue(const XMLCh* value, const XMLCh* predicateOperator, double& low,
                                        double& high, bool& closed) {
  FindBounds(VerifyDouble(value), predicateOperator, low, high, closed);
}

DiscreteSplit* PMMLTranslator::HandleNodeDiscreteSplit(const DOMElement* node, ScoreDictVar* variable,
                                                       std::string& predicateOperator, bool& isMissing,
                                                       std::string& value) const {
  auto split = std::make_unique<DiscreteSplit>(variable);
  if (!HasTag(*node, XML_ELE_PREDICATE)) return split.release();
  const Question question = ReadQuestion(*node, *variable);
  TellQuestion(*this, question, *split, predicateOperator, isMissing, value);
  if (isMissing) return split.release();
  if (question.kind == Question::kNotMissing) {
    if (const ScoreValueLabelSet* labels = variable->GetValueLabels()) {
      for (const ScoreValueLabel* label : labels->GetAllValueLabels()) {
        Put(*variable, *split, *label->GetValue(), kHolds);
      }
    }
  } else if (variable->GetMLevel() == ScoreDictVar::kNominal) {
    SetDiscreteSplitValue(variable, split.get(), question.value, kHolds);
  } else {
    int start = 0;
    int end = 0;
    HandleOrdinalVariable(node, variable, start, end);
    const auto& labels = RequiredLabels(*variable);
    for (int i = start; i <= end; ++i) {
      Put(*variable, *split, *labels[static_cast<std::size_t>(i)]->GetValue(), kHolds);
    }
    split->SetStartAndEndIndex(start, end);
  }
  return split.release();
}

int PMMLTranslator::HandleOrdinalVariable(const DOMElement* element, const ScoreDictVar* variable, int& start,
                                          int& end) const {
  const XMLCh* value = RequiredAttribute(*element, XML_ATT_VALUE);
  const XMLCh* predicateOperator = RequiredAttribute(*element, XML_ATT_OPERATOR);
  const int position = GetIndexOfOrdinalValue(value, variable);
  if (position < 0) {
    Raise(MessageId::kInvalidAttributeValueIn,
          {ToUTF8(value), XML_ATT_VALUE, ToUTF8Argument(variable->GetName())});
  }
  const ComparisonRow* row = FindComparison(predicateOperator);
  if (row == nullptr) {
    Raise(MessageId::kInvalidAttributeValueIn,
          {ToUTF8(predicateOperator), XML_ATT_OPERATOR, ToUTF8Argument(variable->GetName())});
  }
  start = position;
  end = position;
  if (row->isLow && row->isHigh) return row->isClosed ? 0 : 2;
  if (row->isLow) {
    if (!row->isClosed) ++start;
    end = variable->GetValueLabels()->Size() - 1;
  } else {
    start = 0;
    if (!row->isClosed) --end;
  }
  return 1;
}

int PMMLTranslator::GetIndexOfOrdinalValue(const XMLCh* value, const ScoreDictVar* variable) const {
  const auto& labels = RequiredLabels(*variable);
  const std::string text = BaseTranslator::ToString(value);
  const bool isString = IsString(*variable);
  if (!isString && !IsNumber(text)) return -1;
  const std::unique_ptr<ScoreValue> wanted = ValueOf(*variable, text);
  for (std::size_t i = 0; i < labels.size(); ++i) {
    const ScoreValue& listed = *labels[i]->GetValue();
    if (isString ? listed.GetString() == text : listed == *wanted) return static_cast<int>(i);
  }
  return -1;
}

const std::vector<ScoreValueLabel*>& PMMLTranslator::RequiredLabels(const ScoreDictVar& variable) const {
  const ScoreValueLabelSet* labels = variable.GetValueLabels();
  if (labels == nullptr) Raise(MessageId::kValueListRequired, {ToUTF8Argument(variable.GetName())});
  return labels->GetAllValueLabels();
}

void PMMLTranslator::SetDiscreteSplitValue(ScoreDictVar* variable, DiscreteSplit* split, const XMLCh* value,
                                           int child) const {
  if (value == nullptr) Raise(MessageId::kMissingAttribute, {XML_ATT_VALUE});
  const std::string text = BaseTranslator::ToString(value);
  const std::unique_ptr<ScoreValue> wanted = ValueOf(*variable, text);
  if (!variable->IsEmptyCateValues()) RequiredLabels(*variable);
  const bool isNew = variable->IsEmptyCateValues() && !text.empty() &&
                     !(variable->GetValueLabels() != nullptr && IsValid(*variable, text, *wanted));
  if (isNew) variable->AddScoreValueLabel(CarefullyMakeVarValue(variable, value), text);
  if (!IsValid(*variable, text, *wanted)) {
    Raise(MessageId::kNoValidValue, {ToUTF8Argument(variable->GetName())});
  }
  Put(*variable, *split, *wanted, child);
}

std::vector<std::string> PMMLTranslator::Remove(const ScoreDictVar* variable,
                                                const std::vector<std::string>& values) const {
  std::vector<std::string> texts;
  for (const ScoreValue* value : Remaining(*variable, values)) texts.push_back(ExactText(*value));
  return texts;
}

bool PMMLTranslator::IsValidScoreValue(const ScoreDictVar* variable, const std::string& value) {
  return variable->GetValueLabels() != nullptr && IsValid(*variable, value, *ValueOf(*variable, value));
}

DiscreteSplit* PMMLTranslator::HandleArrayDiscreteSplit(const DOMElement* node, ScoreDictVar* variable,
                                                        std::string& setOperator,
                                                        std::vector<double>& arrayData) const {
  auto split = std::make_unique<DiscreteSplit>(variable);
  if (!HasTag(*node, XML_ELE_SETPREDICATE)) return split.release();
  const XMLCh* operatorText = Attribute(*node, XML_ATT_BOOLEANOPERATOR);
  const bool isIn = EqualsAscii(operatorText, XML_ZENT_TRANFUNC_ISIN);
  if (!isIn && !EqualsAscii(operatorText, XML_ZENT_TRANFUNC_ISNOTIN)) {
    Raise(MessageId::kInvalidAttributeValueIn,
          {ToUTF8(operatorText), XML_ATT_OPERATOR, ToUTF8Argument(variable->GetName())});
  }
  setOperator = BaseTranslator::ToString(operatorText);
  const DOMElement& array = *GetArrayNode(node);
  const std::string type = OptionalText(array, XML_ATT_ARRAY_TYPE);
  if (!IsArrayType(type)) Raise(MessageId::kAttributeProcessingError, {type, XML_ATT_ARRAY_TYPE});
  const std::vector<std::string> items = GetArrayElements(&array, type, variable);
  SetReader values(*variable, *split, arrayData);
  const bool learns = isIn && LearnsCategories(*variable);
  for (const std::string& item : items) {
    if (learns && !IsValidScoreValue(variable, item) && !item.empty()) {
      variable->AddScoreValueLabel(CarefullyMakeVarValue(variable, item), item);
    }
    if (!IsValidScoreValue(variable, item)) {
      if (isIn) Raise(MessageId::kInvalidAttributeValue, {ToUTF8Argument(item), XML_ATT_VALUE});
      Raise(MessageId::kValueOutsideRange, {ToUTF8Argument(item), ToUTF8Argument(variable->GetName())});
    }
    if (isIn) values.Add(*ValueOf(*variable, item));
  }
  if (!isIn) {
    for (const ScoreValue* value : Remaining(*variable, items)) values.Add(*value);
  }
  return split.release();
}

}  // namespace KxVeyra_940
