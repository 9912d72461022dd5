// Counting in ascending numbers, without branches that depend on them: data are rarely predictable.

#ifndef VEYRA_TRANSFORM_SORTEDSEARCH_H_
#define VEYRA_TRANSFORM_SORTEDSEARCH_H_

#include <cstddef>
#include <span>

namespace KxVeyra_940 {

// How many of `numbers` satisfy `isBefore`; those that do stand in front of those that do not.
template <class IsBefore>
std::size_t CountInFront(std::span<const double> numbers, IsBefore isBefore) {
  const double* first = numbers.data();
  std::size_t count = numbers.size();
  while (count > 1) {
    const std::size_t half = count / 2;
    first += isBefore(first[half - 1]) ? half : 0;
    count -= half;
  }
  const auto passed = static_cast<std::size_t>(first - numbers.data());
  return passed + (count == 1 && isBefore(*first) ? 1 : 0);
}

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSFORM_SORTEDSEARCH_H_
