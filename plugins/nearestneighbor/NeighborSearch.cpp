#include "nearestneighbor/NeighborSearch.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace KxVeyra_940::Plugin {

namespace {

constexpr double kNotComparable = std::numeric_limits<double>::quiet_NaN();

// What a comparison adds to the sum.
template <Aggregation kAggregation>
double Term(double comparison, double weight, double power) {
  if constexpr (kAggregation == Aggregation::kEuclidean || kAggregation == Aggregation::kSquaredEuclidean) {
    return weight * (comparison * comparison);
  } else if constexpr (kAggregation == Aggregation::kMinkowski) {
    return weight * std::pow(comparison, power);
  } else {
    return weight * comparison;
  }
}

template <Aggregation kAggregation>
double Join(double sum, double term) {
  if constexpr (kAggregation == Aggregation::kChebychev) return sum < term ? term : sum;
  return sum + term;
}

}  // namespace

NeighborSearch::NeighborSearch(std::shared_ptr<const InstanceMatrix> matrix, const Measure& measure,
                               const std::vector<ComparedField>& fields, std::size_t count)
    : fMatrix(std::move(matrix)),
      fMeasure(measure),
      fFields(fields),
      fCount(std::min(count, fMatrix->Size())) {
  for (const ComparedField& field : fFields) fMissingWeight += field.missingWeight;
  fActive.reserve(fFields.size());
  fBest.reserve(fCount);
}

void NeighborSearch::Activate(std::span<const double> values) {
  fActive.clear();
  fIsPlain = true;
  fPresentWeight = 0;
  for (std::size_t i = 0; i < fFields.size(); ++i) {
    if (std::isnan(values[i])) continue;
    const ComparedField& field = fFields[i];
    fActive.push_back({i * kLanes, values[i], field.function, field.weight, field.missingWeight,
                       -std::numbers::ln2 / (field.scale * field.scale)});
    fIsPlain = fIsPlain && field.function == CompareFunction::kAbsDiff;
    fPresentWeight += field.missingWeight;
  }
}

std::span<const Neighbor> NeighborSearch::Find(std::span<const double> values) {
  Activate(values);
  fBest.clear();
  if (fActive.empty()) return {};
  switch (fMeasure.aggregation) {
    case Aggregation::kEuclidean:
    case Aggregation::kSquaredEuclidean:
      Scan<Aggregation::kSquaredEuclidean>();
      break;
    case Aggregation::kChebychev:
      Scan<Aggregation::kChebychev>();
      break;
    case Aggregation::kCityBlock:
      Scan<Aggregation::kCityBlock>();
      break;
    case Aggregation::kMinkowski:
      Scan<Aggregation::kMinkowski>();
      break;
    case Aggregation::kBinary:
      ScanBinary();
      break;
  }
  std::sort_heap(fBest.begin(), fBest.end());
  return fBest;
}

// Roots do not change the order: they wait for the instances that are found.
double NeighborSearch::AffinityOf(const Neighbor& neighbor) const {
  const double value = fMeasure.isSimilarity ? -neighbor.key : neighbor.key;
  if (fMeasure.aggregation == Aggregation::kEuclidean) return std::sqrt(value);
  if (fMeasure.aggregation == Aggregation::kMinkowski) return std::pow(value, 1 / fMeasure.power);
  return value;
}

template <Aggregation kAggregation>
void NeighborSearch::Scan() {
  Lanes keys;
  for (std::size_t block = 0; block < fMatrix->GetBlockCount(); ++block) {
    const double* const values = fMatrix->GetBlock(block);
    if (fMatrix->HasMissing(block)) {
      Compare<kAggregation, true>(values, keys);
    } else {
      Compare<kAggregation, false>(values, keys);
    }
    Offer(block * kLanes, keys);
  }
}

template <Aggregation kAggregation, bool kHasMissing>
void NeighborSearch::Compare(const double* block, Lanes& keys) const {
  Lanes sums{};
  Lanes present{};
  if (fIsPlain) {
    ComparePlain<kAggregation, kHasMissing>(block, sums, present, std::make_index_sequence<kLanes>());
  } else {
    for (const ActiveField& field : fActive)
      CompareField<kAggregation, kHasMissing>(field, block + field.offset, sums, present);
  }
  const double sign = fMeasure.isSimilarity ? -1 : 1;
  for (std::size_t i = 0; i < kLanes; ++i) {
    const double weight = kHasMissing ? present[i] : fPresentWeight;
    keys[i] = weight > 0 ? sign * (fMissingWeight / weight) * sums[i] : kNotComparable;
  }
}

// The usual case.  Written out lane by lane, so that the sums stay in registers from field to field.
template <Aggregation kAggregation, bool kHasMissing, std::size_t... kLane>
void NeighborSearch::ComparePlain(const double* block, Lanes& sums, Lanes& present,
                                  std::index_sequence<kLane...>) const {
  Lanes inSums{};
  Lanes inPresent{};
  const double power = fMeasure.power;
  for (const ActiveField& field : fActive) {
    const double* const values = block + field.offset;
    const auto add = [&](double other, double& sum, double& weight) {
      const bool isMissing = kHasMissing && std::isnan(other);
      const double term = Term<kAggregation>(std::abs(field.value - other), field.weight, power);
      sum = Join<kAggregation>(sum, isMissing ? 0 : term);
      if constexpr (kHasMissing) weight += isMissing ? 0 : field.missingWeight;
    };
    (add(values[kLane], inSums[kLane], inPresent[kLane]), ...);
  }
  sums = inSums;
  present = inPresent;
}

template <Aggregation kAggregation, bool kHasMissing>
void NeighborSearch::CompareField(const ActiveField& field, const double* values, Lanes& sums,
                                  Lanes& present) const {
  const auto add = [&](auto compare) {
    for (std::size_t i = 0; i < kLanes; ++i) {
      if (kHasMissing && std::isnan(values[i])) continue;
      sums[i] =
          Join<kAggregation>(sums[i], Term<kAggregation>(compare(values[i]), field.weight, fMeasure.power));
      if (kHasMissing) present[i] += field.missingWeight;
    }
  };
  const double value = field.value;
  switch (field.function) {
    case CompareFunction::kAbsDiff:
      return add([value](double other) { return std::abs(value - other); });
    case CompareFunction::kGaussSim:
      return add([&field](double other) {
        const double difference = field.value - other;
        return std::exp(field.exponent * difference * difference);
      });
    case CompareFunction::kDelta:
      return add([value](double other) { return value == other ? 0.0 : 1.0; });
    case CompareFunction::kEqual:
      return add([value](double other) { return value == other ? 1.0 : 0.0; });
  }
}

void NeighborSearch::ScanBinary() {
  Lanes keys;
  for (std::size_t block = 0; block < fMatrix->GetBlockCount(); ++block) {
    CompareBinary(fMatrix->GetBlock(block), fMatrix->HasMissing(block), keys);
    Offer(block * kLanes, keys);
  }
}

// Values are 0 and 1: sums of them are counts.
void NeighborSearch::CompareBinary(const double* block, bool hasMissing, Lanes& keys) const {
  Lanes a11{};
  Lanes a01{};
  Lanes ones{};   // how often the case has 1, of the fields that both have
  Lanes zeros{};  // how often it has 0
  for (const ActiveField& field : fActive) {
    const double* const values = block + field.offset;
    Lanes& hits = field.value != 0 ? a11 : a01;
    Lanes& count = field.value != 0 ? ones : zeros;
    for (std::size_t i = 0; i < kLanes; ++i) {
      if (hasMissing && std::isnan(values[i])) continue;
      hits[i] += values[i];
      count[i] += 1;
    }
  }
  for (std::size_t i = 0; i < kLanes; ++i) {
    const double a10 = ones[i] - a11[i];
    const double a00 = zeros[i] - a01[i];
    const double numerator = fMeasure.numerator.Sum(a11[i], a10, a01[i], a00);
    const double denominator = fMeasure.denominator.Sum(a11[i], a10, a01[i], a00);
    const double similarity = denominator == 0 ? 0 : numerator / denominator;
    keys[i] = ones[i] + zeros[i] > 0 ? -similarity : kNotComparable;
  }
}

// Keeps the nearest ones.  Instances come in their order, so that an equally near one is no better.
void NeighborSearch::Offer(std::size_t first, const Lanes& keys) {
  const std::size_t count = std::min(kLanes, fMatrix->Size() - first);
  for (std::size_t i = 0; i < count; ++i) {
    const bool isFull = fBest.size() == fCount;
    if (isFull ? !(keys[i] < fBest.front().key) : std::isnan(keys[i])) continue;
    if (isFull) {
      std::pop_heap(fBest.begin(), fBest.end());
      fBest.pop_back();
    }
    fBest.push_back({keys[i], first + i});
    std::push_heap(fBest.begin(), fBest.end());
  }
}

}  // namespace KxVeyra_940::Plugin
