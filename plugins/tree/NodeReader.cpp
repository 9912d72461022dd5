#include "tree/NodeReader.h"

#include <algorithm>

#include "data/StringValue.h"
#include "error/Raise.h"
#include "translate/DomReader.h"
#include "tree/NodeTests.h"
#include "tree/TestPredicates.h"
#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/PMMLStandardTags.h"
#include "xml/XmlText.h"

namespace KxVeyra_940::Plugin {

namespace Tags = PMMLModelTags;
namespace StandardTags = PMMLStandardTags;
using xercesc::DOMElement;

namespace {

// A number that may not be negative; 0 when it is absent.
double OptionalCount(const DOMElement& element, const char* name) {
  const double count = OptionalNumber(element, name).value_or(0);
  if (!(count >= 0)) Raise(MessageId::kNegative, {OptionalText(element, name), name});
  return count;
}

std::optional<double> OptionalShare(const DOMElement& element, const char* name) {
  const std::optional<double> share = OptionalNumber(element, name);
  if (share.has_value() && !(*share >= 0 && *share <= 1)) {
    Raise(MessageId::kInvalidAttributeValue, {OptionalText(element, name), name});
  }
  return share;
}

bool IsText(const ScoreDictVar* target) {
  return target == nullptr || target->GetVarType() == ScoreDictVar::STRING_VAR;
}

}  // namespace

NodeReader::NodeReader(const PMMLTranslator& translator, PredicateReader& predicateReader,
                       NodeEvaluation evaluation, FlatTree& tree, bool isClassification, bool isBinary,
                       const ScoreDictVar* target)
    : fTranslator(translator),
      fPredicateReader(predicateReader),
      fEvaluation(evaluation),
      fTree(tree),
      fIsClassification(isClassification),
      fIsBinary(isBinary),
      fTarget(target),
      fCategories(MakeTargetTable(target)) {}

bool NodeReader::AnswersTogether() const {
  return fTree.strategy == MissingStrategy::kWeightedConfidence ||
         fTree.strategy == MissingStrategy::kAggregateNodes;
}

void NodeReader::Read(const DOMElement& root) {
  fPending.push_back({&root, fTree.AddNodes(1), -1});
  while (!fPending.empty()) {
    const Pending pending = fPending.back();
    fPending.pop_back();
    ReadNode(pending);
  }
}

std::vector<std::unique_ptr<ScoreValue>> NodeReader::GetCategories() const {
  std::vector<std::unique_ptr<ScoreValue>> categories;
  for (int code = 0; code < fCategories->Size(); ++code) {
    categories.emplace_back(fCategories->GetValue(code).Clone());
  }
  return categories;
}

void NodeReader::ReadNode(const Pending& pending) {
  ++fReadNodes;
  SortContent(*pending.element);
  ReadTest(pending.node);
  ReadAnswer(*pending.element, pending.node);
  NodeAnswer& answer = fTree.Answer(pending.node);
  answer.lastScored = answer.hasScore ? pending.node : pending.lastScored;
  ReadChildren(pending);
}

void NodeReader::SortContent(const DOMElement& element) {
  fContent.predicate = nullptr;
  fContent.distributions.clear();
  fContent.children.clear();
  ForEachChildElement(&element, [this](const DOMElement& child) {
    if (HasTag(child, Tags::XML_ELE_NODE)) {
      fContent.children.push_back(&child);
    } else if (HasTag(child, Tags::XML_ELE_SCOREDISTRIBUTION)) {
      fContent.distributions.push_back(&child);
    } else if (PredicateReader::IsPredicate(child)) {
      const std::string tag = PMMLTranslator::ToString(child.getTagName());
      if (fContent.predicate != nullptr) Raise(MessageId::kMoreThanOneIn, {tag, Tags::XML_ELE_NODE});
      fContent.predicate = &child;
    } else if (HasTag(child, Tags::XML_ELE_REGRESSION) || HasTag(child, Tags::XML_ELE_DECISIONTREE)) {
      Raise(MessageId::kUnsupportedElement,
            {PMMLTranslator::ToString(child.getTagName()), Tags::XML_ELE_TREEMODEL});
    } else if (!HasTag(child, Tags::XML_ELE_EXTENSION) && !HasTag(child, Tags::XML_ELE_PARTITION)) {
      Raise(MessageId::kInvalidNodeIn, {PMMLTranslator::ToString(child.getTagName()), Tags::XML_ELE_NODE});
    }
  });
}

void NodeReader::ReadTest(std::int32_t node) {
  if (fContent.predicate == nullptr) {
    Raise(MessageId::kMissingNodeIn, {Tags::XML_ELE_PREDICATE, Tags::XML_ELE_NODE});
  }
  std::unique_ptr<ScorePredicate> predicate = fPredicateReader.Read(*fContent.predicate);
  if (fEvaluation == NodeEvaluation::kCompiled) {
    if (const std::optional<NodeTest> test = CompileTest(*predicate, fTree)) {
      fTree.SetTest(node, *test);
      return;
    }
  }
  NodeTest test;
  test.kind = HasSurrogates(*predicate) ? TestKind::kSurrogatePredicate : TestKind::kPredicate;
  test.predicate = static_cast<std::uint32_t>(fPredicates.size());
  fPredicates.push_back(std::move(predicate));
  fTree.SetTest(node, test);
}

void NodeReader::ReadAnswer(const DOMElement& element, std::int32_t node) {
  const XMLCh* id = Attribute(element, Tags::XML_VAL_NAME_ID);
  fTree.Id(node) = IsEmpty(id) ? std::to_string(fReadNodes) : fTranslator.EncodedText(id);
  NodeAnswer& answer = fTree.Answer(node);
  answer.recordCount = OptionalCount(element, Tags::XML_ATT_RECORDCOUNT);
  const XMLCh* score = Attribute(element, Tags::XML_ATT_SCORE);
  answer.hasScore = !IsEmpty(score);
  if (fIsClassification) {
    if (answer.hasScore) answer.category = CategoryOf(score);
    ReadDistributions(answer);
  } else if (answer.hasScore) {
    answer.number = BaseTranslator::VerifyDouble(score);
  }
  const bool isLeaf = fContent.children.empty();
  if (isLeaf && !answer.hasScore) RequiredAttribute(element, Tags::XML_ATT_SCORE);
  if (isLeaf && !answer.hasScore) Raise(MessageId::kNullIn, {Tags::XML_ATT_SCORE, Tags::XML_ELE_NODE});
  if (!AnswersTogether()) return;
  if (node != 0 && !(answer.recordCount > 0)) RequiredAttribute(element, Tags::XML_ATT_RECORDCOUNT);
  if (isLeaf && fIsClassification && answer.shareCount == 0) {
    Raise(MessageId::kMissingNodeIn, {Tags::XML_ELE_SCOREDISTRIBUTION, Tags::XML_ELE_NODE});
  }
}

NodeReader::Distribution NodeReader::ReadDistribution(const DOMElement& element, std::int32_t stamp) {
  const XMLCh* value = RequiredAttribute(element, Tags::XML_ATT_VALUE);
  const int category = CategoryOf(value);
  const auto place = static_cast<std::size_t>(category);
  if (fLastNode.size() <= place) fLastNode.resize(place + 1, 0);
  if (fLastNode[place] == stamp) {
    Raise(MessageId::kDuplicateValueIn,
          {Tags::XML_ELE_SCOREDISTRIBUTION, PMMLTranslator::ToString(value), Tags::XML_ELE_NODE});
  }
  fLastNode[place] = stamp;
  const std::optional<double> probability = OptionalShare(element, Tags::XML_ATT_NODE_PROBABILITY);
  const std::optional<double> confidence = OptionalShare(element, Tags::XML_ATT_CONFIDENCE);
  if (!probability.has_value()) RequiredAttribute(element, Tags::XML_ATT_RECORDCOUNT);
  const double recordCount = OptionalCount(element, Tags::XML_ATT_RECORDCOUNT);
  return {{category, probability.value_or(0), confidence.value_or(0), recordCount},
          probability.has_value(),
          confidence.has_value()};
}

// Probabilities are given for all categories or for none; then they, and confidences that are not given, are
// shares of the records.
void NodeReader::ReadDistributions(NodeAnswer& answer) {
  fShares.clear();
  double records = 0;
  std::size_t withProbability = 0;
  for (const DOMElement* element : fContent.distributions) {
    const Distribution& read = fShares.emplace_back(ReadDistribution(*element, fReadNodes));
    records += read.share.recordCount;
    if (read.hasProbability) ++withProbability;
  }
  const bool hasProbabilities = withProbability > 0;
  if (hasProbabilities && withProbability != fShares.size()) {
    Raise(MessageId::kNotAllHaveAttribute, {Tags::XML_ELE_SCOREDISTRIBUTION, Tags::XML_ATT_NODE_PROBABILITY});
  }
  if (answer.recordCount == 0) answer.recordCount = records;
  if (!hasProbabilities && !(records > 0)) return;
  answer.firstShare = static_cast<std::uint32_t>(fTree.ShareCount());
  answer.shareCount = static_cast<std::uint32_t>(fShares.size());
  double best = -1;
  for (Distribution& read : fShares) {
    const double part = records > 0 ? read.share.recordCount / records : read.share.probability;
    if (!hasProbabilities) read.share.probability = part;
    if (!read.hasConfidence) read.share.confidence = part;
    fTree.AddShare(read.share);
    // The category that occurs most often, the first of several, is the score of a node that names none.
    if (answer.hasScore || part <= best) continue;
    best = part;
    answer.category = read.share.category;
  }
  answer.hasScore = answer.hasScore || answer.shareCount > 0;
}

void NodeReader::ReadChildren(const Pending& pending) {
  const std::size_t count = fContent.children.size();
  if (count == 0) return;
  if (fIsBinary && count != 2) {
    Raise(MessageId::kElementNumberMismatch,
          {StandardTags::XML_VAL_BINARYSPLIT, StandardTags::XML_ATT_SPLITCHARACTERISTIC,
           std::to_string(count), Tags::XML_ELE_NODE, Tags::XML_ELE_NODE});
  }
  const std::int32_t first = fTree.AddNodes(count);
  fTree.SetChildren(pending.node, first, static_cast<std::int32_t>(count));
  fTree.Answer(pending.node).defaultChild = FindDefaultChild(*pending.element, first);
  const std::int32_t lastScored = fTree.Answer(pending.node).lastScored;
  for (std::size_t i = count; i-- > 0;) {  // the first child comes next
    fPending.push_back({fContent.children[i], first + static_cast<std::int32_t>(i), lastScored});
  }
}

std::int32_t NodeReader::FindDefaultChild(const DOMElement& element, std::int32_t first) const {
  const XMLCh* wanted = Attribute(element, Tags::XML_ATT_DEFAULTCHILD);
  if (IsEmpty(wanted)) {
    if (fTree.strategy == MissingStrategy::kDefaultChild) {
      Raise(MessageId::kMissingAttributeOf, {Tags::XML_ATT_DEFAULTCHILD, Tags::XML_ELE_NODE});
    }
    return -1;
  }
  for (const DOMElement* child : fContent.children) {
    if (KxXML_940::View(Attribute(*child, Tags::XML_VAL_NAME_ID)) == wanted) return first;
    ++first;
  }
  Raise(MessageId::kInvalidAttributeValueIn,
        {PMMLTranslator::ToString(wanted), Tags::XML_ATT_DEFAULTCHILD, Tags::XML_ELE_NODE});
}

int NodeReader::CategoryOf(const XMLCh* text) {
  std::unique_ptr<ScoreValue> value;
  int category = kNoCategory;
  if (IsText(fTarget)) {
    const std::string narrow = fTranslator.EncodedText(text);
    category = fCategories->FindText(narrow);
    if (category != kNoCategory) return category;
    value = std::make_unique<StringValue>(narrow);
  } else {
    value.reset(fTranslator.CarefullyMakeVarValue(fTarget, text));
    category = fCategories->Find(*value);
    if (category != kNoCategory) return category;
  }
  if (fCategories->GetListedCount() > 0) {
    Raise(MessageId::kValueNotInValueList, {PMMLTranslator::ToString(text), fTarget->GetName()});
  }
  return fCategories->Add(*value);
}

}  // namespace KxVeyra_940::Plugin
