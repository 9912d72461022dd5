// Closed intervals of numbers, of which any may be taken out again, and whether a number is in one of them.
//
// A search tree by the lower ends that knows the highest upper end below each node, kept in balance by random
// priorities: adding, taking out and asking cost the logarithm of the number of intervals.
// Threads: Contain may be called by several threads.

#ifndef VEYRA_DATA_COVEREDNUMBERS_H_
#define VEYRA_DATA_COVEREDNUMBERS_H_

#include <compare>
#include <cstdint>
#include <vector>

namespace KxVeyra_940 {

class CoveredNumbers {
 public:
  // REQUIRES: low <= high.
  struct Interval {
    double low;
    double high;

    bool operator==(const Interval&) const = default;
    bool operator<(const Interval& other) const {
      return low != other.low ? low < other.low : high < other.high;
    }
  };

  void Add(const Interval& interval);
  // Takes out one such interval; false when there is none.
  bool Remove(const Interval& interval);
  void Clear();

  // Whether some interval contains the number.
  bool Contain(double number) const {
    int at = fRoot;
    while (at >= 0) {
      const Node& node = At(at);
      if (node.interval.low <= number && number <= node.interval.high) return true;
      // An interval on the left that ends behind the number begins behind it too, if none contains it, and so
      // do all on the right.
      at = node.left >= 0 && At(node.left).highest >= number ? node.left : node.right;
    }
    return false;
  }

 private:
  struct Node {
    Interval interval;
    double highest;  // upper end of all intervals from here on down
    std::uint32_t priority;
    int left = -1;
    int right = -1;
  };

  const Node& At(int node) const { return fNodes[static_cast<std::size_t>(node)]; }
  Node& At(int node) { return fNodes[static_cast<std::size_t>(node)]; }
  int NewNode(const Interval& interval);
  int Updated(int node);
  void Split(int node, const Interval& at, int& below, int& above);
  int Joined(int left, int right);
  int Without(int node, const Interval& interval, bool& isFound);

  std::vector<Node> fNodes;
  std::vector<int> fFree;  // nodes in no tree
  int fRoot = -1;
  std::uint32_t fRandom = 1;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_COVEREDNUMBERS_H_
