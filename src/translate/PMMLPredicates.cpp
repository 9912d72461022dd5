// Predicates of tree nodes: each becomes a predicate whose split sends what satisfies it to child 0.

#include <memory>
#include <xercesc/dom/DOMElement.hpp>

#include "data/DateTimeValue.h"
#include "data/NumericValue.h"
#include "data/Range.h"
#include "data/StringValue.h"
#include "data/ValueLabelSet.h"
#include "error/Raise.h"
#include "predicate/CompoundPredicate.h"
#include "predicate/ConstantPredicates.h"
#include "predicate/DiscreteSplit.h"
#include "predicate/ScaleSplit.h"
#include "predicate/SetPredicate.h"
#include "predicate/SimplePredicate.h"
#include "translate/DomReader.h"
#include "translate/PMMLTranslator.h"
#include "translate/PredicatesInternal.h"
#include "vocabulary/PMMLModelTags.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {
namespace {

using namespace PMMLModelTags;
using KxXML_940::EqualsAscii;
using KxXML_940::ToUTF8;
using xercesc::DOMElement;

constexpr double kInfinity = NumericValue::gInfinity;

constexpr ComparisonRow kComparisons[] = {
    {XML_VAL_OPERATOR_GREATERTHAN, true, false, false}, {XML_VAL_OPERATOR_GREATEROREQUAL, true, false, true},
    {XML_VAL_OPERATOR_LESSTHAN, false, true, false},    {XML_VAL_OPERATOR_LESSOREQUAL, false, true, true},
    {XML_VAL_OPERATOR_EQUAL, true, true, true},         {XML_VAL_OPERATOR_NOTEQUAL, true, true, false},
};

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

bool HasEmptyCategory(const ScoreDictVar& variable) {
  if (!IsString(variable) || variable.GetValueLabels() == nullptr) return false;
  const StringValue empty("");
  return ValueLabelSet::FindEqual(*variable.GetValueLabels(), &empty, true, true) >= 0;
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
      Raise(MessageId::kProcessingError, {XML_ELE_COMPOUNDPREDICATE},
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

const ComparisonRow* FindComparison(const XMLCh* text) {
  for (const ComparisonRow& row : kComparisons) {
    if (EqualsAscii(text, row.text)) return &row;
  }
  return nullptr;
}

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

void TellQuestion(const BaseTranslator& translator, const Question& question, ScoreSplitVar& split,
                  std::string& predicateOperator, bool& isMissing, std::string& value) {
  predicateOperator = translator.ToString(question.predicateOperator);
  value = translator.ToString(question.value);
  isMissing = question.kind == Question::kMissing;
  if (isMissing) split.SetMissvalMap(kHolds);
}

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

}  // namespace KxVeyra_940
