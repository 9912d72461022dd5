// A tree as an array: what a case walks.
//
// The children of a node stand side by side.  A node whose predicate is a plain comparison or a look-up in a
// set of categories is tested in place; any other one names a predicate object, which gives the same answer.
// Input values are numbers by input: system-missing where a number is missing; for categories their codes, -1
// for one that no predicate names, -2 for a missing one.
// Threads: once built, a tree may be walked by any number of threads.

#ifndef VEYRA_PLUGINS_TREE_FLATTREE_H_
#define VEYRA_PLUGINS_TREE_FLATTREE_H_

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "veyra/ScorePredicate.h"

namespace KxVeyra_940::Plugin {

enum class MissingStrategy {
  kNone,
  kLastPrediction,
  kNullPrediction,
  kDefaultChild,
  kWeightedConfidence,
  kAggregateNodes,
};

// How a node is tested.
enum class TestKind : std::int32_t {
  kAlways,
  kNever,
  kInside,         // low <= number <= high
  kOutside,        // not so
  kCode,           // the code is `code`
  kOtherCode,      // is another one
  kInCodes,        // is among the codes of a set
  kNotInCodes,     // is not
  kNumberMissing,  // questions about missing values are never unknown
  kNumberPresent,
  kCodeMissing,
  kCodePresent,
  kPredicate,           // ask the predicate object
  kSurrogatePredicate,  // the same, in which surrogates may decide
};

struct Bounds {
  double low;
  double high;
};

// A part of FlatTree's bits: bit i is set for code i.
struct CodeSet {
  std::uint32_t firstWord;
  std::uint32_t codeCount;
};

struct NodeTest {
  union {
    Bounds bounds;
    double code;
    CodeSet codes;
    std::uint32_t predicate;  // its position
  };
  std::int32_t input = -1;
  TestKind kind = TestKind::kNever;

  NodeTest() : bounds{0, 0} {}
};

// What a node says about one category.
struct ScoreShare {
  std::int32_t category;
  double probability;
  double confidence;
  double recordCount;
};

struct NodeAnswer {
  double number = 0;  // the score of a tree of numbers
  double recordCount = 0;
  std::int32_t category = -1;  // the score of a tree of categories
  bool hasScore = false;
  std::int32_t lastScored = -1;    // the nearest node on the way from the root that has a score; -1 for none
  std::int32_t defaultChild = -1;  // its position
  std::uint32_t firstShare = 0;
  std::uint32_t shareCount = 0;
};

class FlatTree {
 public:
  using Predicates = std::vector<std::unique_ptr<ScorePredicate>>;

  // Where a walk came to.
  struct Ending {
    enum Kind {
      kNode,     // `node` answers
      kNothing,  // no answer
      kSeveral,  // several children of `node` answer together, by the strategy
    };
    Kind kind;
    std::int32_t node;
    std::int32_t penalties;  // surrogates and default children on the way
  };

  MissingStrategy strategy = MissingStrategy::kNone;
  bool returnsLastPrediction = false;  // when no child of a node is true
  double penalty = 1;                  // of a confidence, for each surrogate and default child

  // --- Building: the root is node 0

  // Adds that many nodes side by side and returns the position of the first.
  std::int32_t AddNodes(std::size_t count);
  void SetTest(std::int32_t node, const NodeTest& test) { At(node).test = test; }
  void SetChildren(std::int32_t node, std::int32_t first, std::int32_t count);
  NodeAnswer& Answer(std::int32_t node) { return fAnswers[Index(node)]; }
  std::string& Id(std::int32_t node) { return fIds[Index(node)]; }
  void AddShare(const ScoreShare& share) { fShares.push_back(share); }
  // Codes beyond the set are not in it.
  CodeSet AddCodes(const std::vector<std::int32_t>& codes);

  // --- Reading

  std::size_t Size() const { return fNodes.size(); }
  const NodeAnswer& Answer(std::int32_t node) const { return fAnswers[Index(node)]; }
  const std::string& Id(std::int32_t node) const { return fIds[Index(node)]; }
  const ScoreShare* Shares(std::int32_t node) const { return fShares.data() + Answer(node).firstShare; }
  std::size_t ShareCount() const { return fShares.size(); }
  std::int32_t FirstChild(std::int32_t node) const { return At(node).firstChild; }
  std::int32_t ChildCount(std::int32_t node) const { return At(node).childCount; }
  const NodeTest& Test(std::int32_t node) const { return At(node).test; }

  ScorePredicate::PredicateResult Evaluate(std::int32_t node, const std::vector<double>& values,
                                           const Predicates& predicates) const;
  // How many surrogates decided that the node's predicate, which was evaluated, is `result`, as far as there
  // is a penalty of them.
  std::int32_t CountSurrogates(std::int32_t node, ScorePredicate::PredicateResult result,
                               const std::vector<double>& values, const Predicates& predicates) const;
  // From the root, whose predicate must be true.
  Ending Walk(const std::vector<double>& values, const Predicates& predicates) const;
  // From a node whose predicate counts as true.
  Ending WalkFrom(std::int32_t node, const std::vector<double>& values, const Predicates& predicates) const;

 private:
  struct Node {
    NodeTest test;
    std::int32_t firstChild = -1;
    std::int32_t childCount = 0;
  };
  static_assert(sizeof(Node) == 32, "two nodes to a cache line");

  static std::size_t Index(std::int32_t node) { return static_cast<std::size_t>(node); }
  Node& At(std::int32_t node) { return fNodes[Index(node)]; }
  const Node& At(std::int32_t node) const { return fNodes[Index(node)]; }
  bool IsInCodes(const CodeSet& codes, double code) const;

  std::vector<Node> fNodes;
  std::vector<NodeAnswer> fAnswers;  // by node
  std::vector<std::string> fIds;     // by node
  std::vector<ScoreShare> fShares;
  std::vector<std::uint64_t> fCodeBits;
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_TREE_FLATTREE_H_
