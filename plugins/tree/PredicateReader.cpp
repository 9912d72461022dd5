#include "tree/PredicateReader.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "data/NumericValue.h"
#include "error/Raise.h"
#include "predicate/CompoundPredicate.h"
#include "predicate/ConstantPredicates.h"
#include "predicate/DiscreteSplit.h"
#include "translate/DomReader.h"
#include "tree/TestPredicates.h"
#include "vocabulary/PMMLModelTags.h"

namespace KxVeyra_940::Plugin {

namespace Tags = PMMLModelTags;
using xercesc::DOMElement;
using xercesc::DOMNode;

namespace {

bool IsNumericOrdinal(const ScoreDictVar& variable) {
  return variable.GetMLevel() == ScoreDictVar::kOrdinal &&
         variable.GetVarType() == ScoreDictVar::kNUMERIC_VAR;
}

bool IsOrdering(SimplePredicate::PredicateOperator predicateOperator) {
  return predicateOperator >= SimplePredicate::kLessThan &&
         predicateOperator <= SimplePredicate::kGreaterOrEqual;
}

template <class Predicate>
std::unique_ptr<Predicate> As(std::unique_ptr<ScorePredicate> predicate) {
  return std::unique_ptr<Predicate>(static_cast<Predicate*>(predicate.release()));
}

}  // namespace

PredicateReader::PredicateReader(const PMMLTranslator& translator, ScoreDictionary& dictionary,
                                 ScoreDictionary* transformations, const DOMElement& tree)
    : fTranslator(translator), fDictionary(dictionary), fTransformations(transformations) {
  bool isOpen = false;
  std::vector<ScoreDictVar*> variables = dictionary.GetScoreDictVars();
  if (transformations != nullptr)
    std::ranges::copy(transformations->GetScoreDictVars(), std::back_inserter(variables));
  for (ScoreDictVar* variable : variables) {
    if (variable->GetEncodedValueIndex() < 0) continue;
    if (IsNumericOrdinal(*variable) && variable->GetValueLabels() == nullptr) {
      variable->SetMLevel(ScoreDictVar::kContinuous);
    }
    isOpen = isOpen || (variable->GetMLevel() == ScoreDictVar::kNominal && variable->IsEmptyCateValues());
  }
  if (isOpen) LearnCategories(tree);
  for (ScoreDictVar* variable : variables) {
    if (variable->GetEncodedValueIndex() >= 0) PMMLTranslator::SetupCatEncoder(variable);
  }
}

ScoreDictVar* PredicateReader::FindField(const DOMElement& element) const {
  const std::string name = fTranslator.EncodedText(Attribute(element, Tags::XML_ATT_FIELD));
  return const_cast<ScoreDictVar*>(PMMLTranslator::FindVariable(name, &fDictionary, fTransformations));
}

// The complement of "isNotIn" is fixed when the element is read, so fields without listed values must know
// all their categories before.
void PredicateReader::LearnCategories(const DOMElement& tree) {
  const auto openVariable = [this](const DOMElement& element) -> ScoreDictVar* {
    ScoreDictVar* variable = FindField(element);
    const bool isOpen = variable != nullptr && variable->GetMLevel() == ScoreDictVar::kNominal &&
                        variable->IsEmptyCateValues();
    return isOpen ? variable : nullptr;
  };
  ForEachElementBelow(tree, Tags::XML_ELE_PREDICATE, [&](const DOMElement& element) {
    ScoreDictVar* variable = openVariable(element);
    if (variable != nullptr) LearnCategory(*variable, Attribute(element, Tags::XML_ATT_VALUE));
  });
  ForEachElementBelow(tree, Tags::XML_ELE_SETPREDICATE, [&](const DOMElement& element) {
    ScoreDictVar* variable = openVariable(element);
    if (variable == nullptr) return;
    const DOMElement& array = *PMMLTranslator::GetArrayNode(&element);
    for (const std::string& item : fTranslator.GetArrayElements(&array, std::string(), variable)) {
      if (!item.empty()) {
        variable->AddScoreValueLabel(fTranslator.CarefullyMakeVarValue(variable, item), item);
      }
    }
  });
}

void PredicateReader::LearnCategory(ScoreDictVar& variable, const XMLCh* text) const {
  if (IsEmpty(text)) return;
  variable.AddScoreValueLabel(fTranslator.CarefullyMakeVarValue(&variable, text),
                              fTranslator.EncodedText(text));
}

bool PredicateReader::IsPredicate(const DOMElement& element) {
  return HasTag(element, Tags::XML_ELE_PREDICATE) || HasTag(element, Tags::XML_ELE_COMPOUNDPREDICATE) ||
         HasTag(element, Tags::XML_ELE_SETPREDICATE) || HasTag(element, Tags::XML_ELE_TRUE) ||
         HasTag(element, Tags::XML_ELE_FALSE);
}

std::unique_ptr<ScorePredicate> PredicateReader::Read(const DOMElement& element) {
  return Corrected(Translate(element), element);
}

std::unique_ptr<ScorePredicate> PredicateReader::Translate(const DOMElement& element) const {
  using Made = std::unique_ptr<ScorePredicate>;
  if (HasTag(element, Tags::XML_ELE_PREDICATE)) {
    return Made(fTranslator.ParsePredicate(&element, &fDictionary, fTransformations, false));
  }
  if (HasTag(element, Tags::XML_ELE_TRUE)) return std::make_unique<TruePredicate>();
  if (HasTag(element, Tags::XML_ELE_FALSE)) return std::make_unique<FalsePredicate>();
  if (HasTag(element, Tags::XML_ELE_SETPREDICATE)) {
    Made set(fTranslator.ParseSetPredicate(&element, &fDictionary, fTransformations));
    if (set == nullptr) VerifySet(element);
    return set;
  }
  Made compound(fTranslator.ParseCompoundPredicate(&element, &fDictionary, fTransformations, false));
  VerifyCompound(element);
  if (compound == nullptr) Raise(MessageId::kNoChildElement, {Tags::XML_ELE_COMPOUNDPREDICATE});
  return compound;
}

// The translator passes over what it cannot use; a condition that is left out would change the answer.
void PredicateReader::VerifyCompound(const DOMElement& element) const {
  for (const DOMNode* node = NextNodeBelow(element, element); node != nullptr;
       node = NextNodeBelow(element, *node)) {
    if (node->getNodeType() != DOMNode::ELEMENT_NODE) continue;
    if (!HasTag(*node->getParentNode(), Tags::XML_ELE_COMPOUNDPREDICATE)) continue;
    const auto& child = static_cast<const DOMElement&>(*node);
    if (HasTag(child, Tags::XML_ELE_EXTENSION)) continue;
    if (!IsPredicate(child)) {
      Raise(MessageId::kInvalidNodeIn,
            {PMMLTranslator::ToString(child.getTagName()), Tags::XML_ELE_COMPOUNDPREDICATE});
    }
    if (HasTag(child, Tags::XML_ELE_SETPREDICATE)) VerifySet(child);
  }
}

void PredicateReader::VerifySet(const DOMElement& element) const {
  const XMLCh* name = Attribute(element, Tags::XML_ATT_FIELD);
  const ScoreDictVar* variable = FindField(element);
  if (variable == nullptr || variable->GetMLevel() != ScoreDictVar::kContinuous) return;
  Raise(MessageId::kVariableEitherValueRequired,
        {PMMLTranslator::ToString(name), Tags::XML_VAL_OT_CATEGORICAL, Tags::XML_VAL_OT_ORDINAL,
         Tags::XML_ATT_DATAFIELD_OPTYPE});
}

void PredicateReader::RaiseUnknownOperator(const DOMElement& element) {
  const auto raise = [](const DOMElement& simple) {
    const std::string text = OptionalText(simple, Tags::XML_ATT_OPERATOR);
    for (int code = 0; code <= SimplePredicate::kIsNotMissing; ++code) {
      if (text == SimplePredicate::GetOperatorText(static_cast<SimplePredicate::PredicateOperator>(code)))
        return;
    }
    Raise(MessageId::kUnsupportedValue, {text, Tags::XML_ATT_OPERATOR});
  };
  if (HasTag(element, Tags::XML_ELE_PREDICATE)) raise(element);
  ForEachElementBelow(element, Tags::XML_ELE_PREDICATE, raise);
  Raise(MessageId::kUnsupportedValue, {std::string(), Tags::XML_ATT_OPERATOR});
}

std::unique_ptr<ScorePredicate> PredicateReader::Corrected(std::unique_ptr<ScorePredicate> predicate,
                                                           const DOMElement& element) {
  switch (predicate->GetPredType()) {
    case ScorePredicate::kCompoundPredicate: {
      auto& compound = static_cast<CompoundPredicate&>(*predicate);
      for (int i = 0; i < compound.GetCount(); ++i) {
        // The place holds a stand-in while its predicate is away, whatever is raised meanwhile.
        std::unique_ptr<ScorePredicate> child(compound.Exchange(i, new FalsePredicate));
        child = Corrected(std::move(child), element);
        const std::unique_ptr<ScorePredicate> standIn(compound.Exchange(i, child.release()));
      }
      return predicate;
    }
    case ScorePredicate::kSimplePredicate:
      Use(*predicate->GetSplit()->GetSplitVar());
      return CorrectedSimple(As<SimplePredicate>(std::move(predicate)), element);
    case ScorePredicate::kSetPredicate:
      Use(*predicate->GetSplit()->GetSplitVar());
      return CorrectedSet(As<SetPredicate>(std::move(predicate)));
    default:
      return predicate;
  }
}

std::unique_ptr<ScorePredicate> PredicateReader::CorrectedSimple(std::unique_ptr<SimplePredicate> predicate,
                                                                 const DOMElement& element) {
  const ScoreDictVar& variable = *predicate->GetSplit()->GetSplitVar();
  const SimplePredicate::PredicateOperator predicateOperator = predicate->GetPredicateOperator();
  if (predicate->IsMissingValue()) return std::make_unique<MissingPredicate>(predicate.release(), true);
  if (predicateOperator == SimplePredicate::kIsNotMissing) {
    // Only a categorical field lets an operator pass that there is not.
    if (!predicate->GetPredValueByString().empty()) RaiseUnknownOperator(element);
    return std::make_unique<MissingPredicate>(predicate.release(), false);
  }
  if (variable.GetMLevel() == ScoreDictVar::kContinuous) return predicate;
  if (predicateOperator == SimplePredicate::kNotEqual) {
    return std::make_unique<ComplementPredicate>(predicate.release());
  }
  if (variable.GetMLevel() == ScoreDictVar::kNominal && IsOrdering(predicateOperator)) {
    Raise(MessageId::kInvalidAttributeValueIn,
          {SimplePredicate::GetOperatorText(predicateOperator), Tags::XML_ATT_OPERATOR, variable.GetName()});
  }
  return predicate;
}

// The split of numeric ordinal fields holds numbers, where the others hold codes.
std::unique_ptr<ScorePredicate> PredicateReader::CorrectedSet(std::unique_ptr<SetPredicate> predicate) {
  const auto& split = static_cast<const DiscreteSplit&>(*predicate->GetSplit());
  const ScoreDictVar& variable = *split.GetSplitVar();
  const bool isNotIn = predicate->GetPredicateOperator() == SetPredicate::kIsNotIn;
  if (!isNotIn && !IsNumericOrdinal(variable)) return predicate;
  const ScoreEncoder& encoder = *variable.GetEncoder();
  std::vector<bool> isHeld(static_cast<std::size_t>(encoder.GetNumberOfCategories()), false);
  split.ForEachCode([&](double number, int) {
    const NumericValue value(number);
    const int code = IsNumericOrdinal(variable) ? encoder.EncodeConst(&value) : static_cast<int>(number);
    isHeld[static_cast<std::size_t>(code)] = true;
  });
  auto named = std::make_unique<DiscreteSplit>(&variable);
  for (std::size_t code = 0; code < isHeld.size(); ++code) {
    if (isHeld[code] != isNotIn) named->PutSplit(static_cast<double>(code), 0);
  }
  predicate->SetSplit(named.release());
  if (!isNotIn) return predicate;
  return std::make_unique<ComplementPredicate>(predicate.release());
}

void PredicateReader::Use(const ScoreDictVar& variable) {
  if (variable.GetEncodedValueIndex() < 0) Raise(MessageId::kNotAPredictor, {variable.GetName()});
  const auto index = static_cast<std::size_t>(variable.GetEncodedValueIndex());
  if (fUsed.size() <= index) fUsed.resize(index + 1, nullptr);
  fUsed[index] = &variable;
}

}  // namespace KxVeyra_940::Plugin
