// The instances that a model was trained with, as numbers: laid out for one pass that compares a case with
// all of them.
//
// Instances stand side by side in blocks, field after field, so that the processor compares several of one
// field at once and each sum is still made in the order of the fields.  Categories are codes; NaN stands for
// a missing value.
//
// Threads: read-only once it is built.

#ifndef VEYRA_PLUGINS_NEARESTNEIGHBOR_INSTANCEMATRIX_H_
#define VEYRA_PLUGINS_NEARESTNEIGHBOR_INSTANCEMATRIX_H_

#include <cstddef>
#include <span>
#include <vector>

namespace KxVeyra_940::Plugin {

class InstanceMatrix {
 public:
  static constexpr std::size_t kLanes = 8;  // instances in a block

  explicit InstanceMatrix(std::size_t fieldCount) : fFieldCount(fieldCount) {}

  // Appends an instance: a value for each field.
  void Add(std::span<const double> values);

  std::size_t Size() const { return fSize; }
  std::size_t GetBlockCount() const { return fHasMissing.size(); }
  // kLanes values of the first field, kLanes of the second one, ...; the last block is filled up with zeros.
  const double* GetBlock(std::size_t block) const { return fValues.data() + block * fFieldCount * kLanes; }
  bool HasMissing(std::size_t block) const { return fHasMissing[block] != 0; }

 private:
  std::size_t fFieldCount;
  std::size_t fSize = 0;
  std::vector<double> fValues;
  std::vector<unsigned char> fHasMissing;  // by block
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_NEARESTNEIGHBOR_INSTANCEMATRIX_H_
