// Finds the first of many ranges that holds a number.
//
// Intervals that lie side by side are found by bisection, any others by trying them in order: the answer is
// the same.  Threads: Find may run in several.

#ifndef VEYRA_TRANSFORM_BINFINDER_H_
#define VEYRA_TRANSFORM_BINFINDER_H_

#include <cstddef>
#include <vector>

#include "veyra/ScoreValueRange.h"

namespace KxVeyra_940 {

class BinFinder {
 public:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  // The ranges outlive the finder and no longer change.
  void Build(std::vector<const ScoreValueRange*> ranges);
  // The position of the first range that holds the number, or kNone.
  std::size_t Find(double number) const;

 private:
  struct Bin {
    double low;
    double high;
    std::size_t position;
    // Numbers strictly between these are in the bin and out of reach of its neighbours.
    double innerLow;
    double innerHigh;
  };
  bool AreSideBySide() const;
  std::size_t FindNear(std::size_t place, double number) const;

  std::vector<const ScoreValueRange*> fRanges;
  std::vector<double> fLows;  // of fBins
  std::vector<Bin> fBins;     // by their lower ends; empty when the ranges have to be tried in order
};

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSFORM_BINFINDER_H_
