// Splits of categorical and ordinal fields: the categories that satisfy a predicate, by value or by code.

#include <algorithm>
#include <charconv>
#include <memory>
#include <xercesc/dom/DOMElement.hpp>

#include "data/NumericValue.h"
#include "data/StringValue.h"
#include "data/ValueLabelSet.h"
#include "error/Raise.h"
#include "predicate/DiscreteSplit.h"
#include "translate/CategoryListsInternal.h"
#include "translate/DomReader.h"
#include "translate/PMMLTranslator.h"
#include "translate/PredicatesInternal.h"
#include "veyra/VYException.h"
#include "vocabulary/PMMLModelTags.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {
namespace {

using namespace PMMLModelTags;
using KxXML_940::EqualsAscii;
using KxXML_940::ToUTF8;
using xercesc::DOMElement;
using Codes = CategoryLists::Codes;

bool IsNumber(const std::string& text) {
  try {
    BaseTranslator::VerifyDouble(text);
    return true;
  } catch (const VYException&) {
    return false;
  }
}

std::unique_ptr<ScoreValue> ValueOf(const ScoreDictVar& variable, const std::string& text) {
  if (IsString(variable)) return std::make_unique<StringValue>(text);
  return std::make_unique<NumericValue>(text);
}

// What is no number is no value of a field of numbers, although it would read as 0.
bool IsValid(const ScoreDictVar& variable, const std::string& text, const ScoreValue& value) {
  return (IsString(variable) || IsNumber(text)) && variable.IsValidValue(&value);
}

// What the splits of simple predicates, and those of sets, hold of a category: its value, its code when the
// variable has an encoder, the number itself in sets of numeric ordinal variables.
Codes CodesOfSimple(const ScoreDictVar& variable) {
  return variable.GetEncoder() == nullptr ? Codes::kNone : Codes::kEncoded;
}
Codes CodesOfSets(const ScoreDictVar& variable) {
  const bool isNumber =
      variable.GetMLevel() == ScoreDictVar::kOrdinal && variable.GetVarType() == ScoreDictVar::kNUMERIC_VAR;
  return variable.GetEncoder() != nullptr && isNumber ? Codes::kNumbers : CodesOfSimple(variable);
}

double CodeOf(ScoreDictVar& variable, const ScoreValue& value, Codes codes) {
  return codes == Codes::kNumbers ? value.GetDouble() : variable.GetEncoder()->Encode(&value);
}

// The positions of the categories that equal one of the texts' values, ascending.
std::vector<int> PositionsOf(const CategoryList& categories, const ScoreDictVar& variable,
                             const std::vector<std::string>& texts) {
  std::vector<int> positions;
  for (const std::string& text : texts) {
    if (!IsString(variable) && !IsNumber(text)) continue;
    const std::unique_ptr<ScoreValue> given = ValueOf(variable, text);
    categories.FindFirst(*given, [&](int position) {
      if (categories.ValueAt(position)->Equal(given.get(), variable.GetNoSpaceTrim(),
                                              variable.GetEmptyStringOK()))
        positions.push_back(position);
      return false;  // there may be more of them
    });
  }
  std::sort(positions.begin(), positions.end());
  positions.erase(std::unique(positions.begin(), positions.end()), positions.end());
  return positions;
}

// Calls `visit(position)` for each category whose position is not among those, in order.
template <class Visit>
void ForEachOther(const CategoryList& categories, const std::vector<int>& positions, Visit visit) {
  auto skipped = positions.begin();
  for (int i = 0; i < categories.Size(); ++i) {
    if (skipped != positions.end() && *skipped == i) {
      ++skipped;
    } else if (categories.ValueAt(i) != nullptr) {
      visit(i);
    }
  }
}

// Six digits, as numbers are shown elsewhere, would not read back as the value.
std::string ExactText(const ScoreValue& value) {
  if (value.GetType() != ScoreValue::kNumericValueType) return value.GetString();
  char text[32];
  return std::string(text, std::to_chars(text, text + sizeof text, value.GetDouble()).ptr);
}

bool IsArrayType(const std::string& type) {
  return type == XML_VAL_ARRAY_TYPE_STRING || type == XML_VAL_ARRAY_TYPE_REAL ||
         type == XML_VAL_ARRAY_TYPE_INT;
}

}  // namespace

DiscreteSplit* PMMLTranslator::HandleNodeDiscreteSplit(const DOMElement* node, ScoreDictVar* variable,
                                                       std::string& predicateOperator, bool& isMissing,
                                                       std::string& value) const {
  auto split = std::make_unique<DiscreteSplit>(variable);
  if (!HasTag(*node, XML_ELE_PREDICATE)) return split.release();
  const Question question = ReadQuestion(*node, *variable);
  TellQuestion(*this, question, *split, predicateOperator, isMissing, value);
  if (isMissing) return split.release();
  if (question.kind == Question::kComparison && variable->GetMLevel() == ScoreDictVar::kNominal) {
    SetDiscreteSplitValue(variable, split.get(), question.value, kHolds);
    return split.release();
  }
  int start = 0;
  int end = -1;
  if (question.kind == Question::kComparison) {
    HandleOrdinalVariable(node, variable, start, end);
    split->SetStartAndEndIndex(start, end);
  } else if (variable->GetValueLabels() != nullptr) {
    end = variable->GetValueLabels()->Size() - 1;
  }
  split->PutCategories(fCategories->Of(*variable, CodesOfSimple(*variable)), start, end, {}, kHolds);
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
  RequiredLabels(*variable);
  const ScoreValueLabelSet& labels = *variable->GetValueLabels();
  const std::string text = EncodedText(value);
  const std::unique_ptr<ScoreValue> wanted = ValueOf(*variable, text);
  // With no space trimmed texts are equal when they are identical.
  if (IsString(*variable)) return ValueLabelSet::FindEqual(labels, wanted.get(), true, true);
  return IsNumber(text) ? ValueLabelSet::Find(labels, wanted.get()) : -1;
}

const std::vector<ScoreValueLabel*>& PMMLTranslator::RequiredLabels(const ScoreDictVar& variable) const {
  const ScoreValueLabelSet* labels = variable.GetValueLabels();
  if (labels == nullptr) Raise(MessageId::kValueListRequired, {ToUTF8Argument(variable.GetName())});
  return labels->GetAllValueLabels();
}

std::unique_ptr<ScoreValue> PMMLTranslator::FindOrLearnCategory(ScoreDictVar& variable,
                                                                const std::string& text) const {
  std::unique_ptr<ScoreValue> value = ValueOf(variable, text);
  if (!variable.IsEmptyCateValues()) {
    RequiredLabels(variable);
  } else if (!text.empty() && (variable.GetValueLabels() == nullptr || !IsValid(variable, text, *value))) {
    variable.AddScoreValueLabel(CarefullyMakeVarValue(&variable, text), text);
  }
  const bool isCategory = variable.GetValueLabels() != nullptr && IsValid(variable, text, *value);
  return isCategory ? std::move(value) : nullptr;
}

void PMMLTranslator::SetDiscreteSplitValue(ScoreDictVar* variable, DiscreteSplit* split, const XMLCh* value,
                                           int child) const {
  if (value == nullptr) Raise(MessageId::kMissingAttribute, {XML_ATT_VALUE});
  std::unique_ptr<ScoreValue> category = FindOrLearnCategory(*variable, EncodedText(value));
  if (category == nullptr) Raise(MessageId::kNoValidValue, {ToUTF8Argument(variable->GetName())});
  if (variable->GetEncoder() == nullptr) {
    split->PutSplit(category.release(), child);
  } else {
    split->PutSplit(CodeOf(*variable, *category, Codes::kEncoded), child);
  }
}

std::vector<std::string> PMMLTranslator::Remove(const ScoreDictVar* variable,
                                                const std::vector<std::string>& values) const {
  std::vector<std::string> texts;
  if (variable->GetValueLabels() == nullptr) return texts;
  const CategoryList categories(variable->GetValueLabels()->GetAllValueLabels(), {});
  ForEachOther(categories, PositionsOf(categories, *variable, values),
               [&](int position) { texts.push_back(ExactText(*categories.ValueAt(position))); });
  return texts;
}

bool PMMLTranslator::IsValidScoreValue(const ScoreDictVar* variable, const std::string& value) {
  const ScoreValueLabelSet* const labels = variable->GetValueLabels();
  if (labels == nullptr) return false;
  const std::unique_ptr<ScoreValue> wanted = ValueOf(*variable, value);
  if (!IsString(*variable)) return IsNumber(value) && ValueLabelSet::Find(*labels, wanted.get()) >= 0;
  return ValueLabelSet::FindEqual(*labels, wanted.get(), variable->GetNoSpaceTrim(),
                                  variable->GetEmptyStringOK()) >= 0;
}

// The items of "isIn" go into the split one by one; of "isNotIn" what they leave of the categories.
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
  setOperator = EncodedText(operatorText);
  const DOMElement& array = *GetArrayNode(node);
  const std::string type = OptionalText(array, XML_ATT_ARRAY_TYPE);
  if (!IsArrayType(type)) Raise(MessageId::kAttributeProcessingError, {type, XML_ATT_ARRAY_TYPE});
  const std::vector<std::string> items = GetArrayElements(&array, type, variable);
  if (isIn) {
    PutItems(*variable, items, *split, arrayData);
  } else {
    PutOthers(*variable, items, *split, arrayData);
  }
  return split.release();
}

void PMMLTranslator::PutItems(ScoreDictVar& variable, const std::vector<std::string>& items,
                              DiscreteSplit& split, std::vector<double>& codes) const {
  for (const std::string& item : items) {
    std::unique_ptr<ScoreValue> category = FindOrLearnCategory(variable, item);
    if (category == nullptr) Raise(MessageId::kInvalidAttributeValue, {ToUTF8Argument(item), XML_ATT_VALUE});
    if (variable.GetEncoder() == nullptr) {
      split.PutSplit(category.release(), kHolds);
    } else {
      codes.push_back(CodeOf(variable, *category, CodesOfSets(variable)));
      split.PutSplit(codes.back(), kHolds);
    }
  }
}

void PMMLTranslator::PutOthers(ScoreDictVar& variable, const std::vector<std::string>& items,
                               DiscreteSplit& split, std::vector<double>& codes) const {
  for (const std::string& item : items) {
    if (!IsValidScoreValue(&variable, item))
      Raise(MessageId::kValueOutsideRange, {ToUTF8Argument(item), ToUTF8Argument(variable.GetName())});
  }
  const std::shared_ptr<const CategoryList> categories = fCategories->Of(variable, CodesOfSets(variable));
  std::vector<int> named = PositionsOf(*categories, variable, items);
  if (categories->HasCodes()) {
    codes.reserve(static_cast<std::size_t>(categories->Size()));
    ForEachOther(*categories, named, [&](int position) { codes.push_back(categories->CodeAt(position)); });
  }
  split.PutCategories(categories, 0, categories->Size() - 1, std::move(named), kHolds);
}

}  // namespace KxVeyra_940
