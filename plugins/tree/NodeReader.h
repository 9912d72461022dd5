// Reads the "Node" elements of a tree into an array.

#ifndef VEYRA_PLUGINS_TREE_NODEREADER_H_
#define VEYRA_PLUGINS_TREE_NODEREADER_H_

#include <memory>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

#include "common/CategoryTable.h"
#include "tree/PredicateReader.h"
#include "tree/TreeTranslator.h"

namespace KxVeyra_940::Plugin {

class NodeReader {
 public:
  // Everything is lent; `target` may be null.
  NodeReader(const PMMLTranslator& translator, PredicateReader& predicateReader, NodeEvaluation evaluation,
             FlatTree& tree, bool isClassification, bool isBinary, const ScoreDictVar* target);

  // Reads the root and everything below it, without recursion: the depth of a tree is no concern.  Raises
  // 260115 (no predicate, no distribution where the strategy needs one), 260120, 260127 (a score that the
  // target does not list), 260152, 260153 (a default child that is no child), 260159, 260164, 260183, 260203,
  // 260246 (not two children of a binary split), 260272 (two predicates) and 260302 (an embedded model).
  void Read(const xercesc::DOMElement& root);

  // The categories in the order of the target's values, or else of their appearance.
  std::vector<std::unique_ptr<ScoreValue>> GetCategories() const;
  FlatTree::Predicates TakePredicates() { return std::move(fPredicates); }

 private:
  struct Pending {
    const xercesc::DOMElement* element;
    std::int32_t node;
    std::int32_t lastScored;  // above it
  };
  // What stands inside a node, in document order.
  struct Content {
    const xercesc::DOMElement* predicate = nullptr;
    std::vector<const xercesc::DOMElement*> distributions;
    std::vector<const xercesc::DOMElement*> children;
  };
  struct Distribution {
    ScoreShare share;
    bool hasProbability;
    bool hasConfidence;
  };

  void ReadNode(const Pending& pending);
  void SortContent(const xercesc::DOMElement& element);
  void ReadTest(std::int32_t node);
  void ReadAnswer(const xercesc::DOMElement& element, std::int32_t node);
  void ReadDistributions(NodeAnswer& answer);
  Distribution ReadDistribution(const xercesc::DOMElement& element, std::int32_t stamp);
  void ReadChildren(const Pending& pending);
  std::int32_t FindDefaultChild(const xercesc::DOMElement& element, std::int32_t first) const;
  int CategoryOf(const XMLCh* text);
  bool AnswersTogether() const;

  const PMMLTranslator& fTranslator;
  PredicateReader& fPredicateReader;
  NodeEvaluation fEvaluation;
  FlatTree& fTree;
  bool fIsClassification;
  bool fIsBinary;
  const ScoreDictVar* fTarget;
  std::unique_ptr<CategoryTable> fCategories;
  FlatTree::Predicates fPredicates;
  std::vector<Pending> fPending;
  Content fContent;                     // of the node under way
  std::vector<Distribution> fShares;    // of the node under way
  std::vector<std::int32_t> fLastNode;  // by category: the last node that named it
  std::int32_t fReadNodes = 0;
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_TREE_NODEREADER_H_
