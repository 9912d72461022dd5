#include "data/ValueIndex.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <functional>
#include <limits>
#include <string_view>

#include "data/NumericValue.h"
#include "data/StringValue.h"
#include "data/TextRules.h"

namespace KxVeyra_940 {

namespace {

// A bucket of numbers spans 2^10 neighbouring doubles, at least 1.1e-13 of their size.  The tolerance of
// equality, widened a little against rounding, reaches less far, so from a number at most one border is
// crossed.
constexpr int kBucketBits = 10;
constexpr double kReach = 3e-14;
static_assert(kReach > NumericValue::fEpsilon && 2 * kReach < 1.1e-13);

// The multiplier of a Weyl sequence spreads neighbouring buckets over the table.
constexpr std::uint64_t kSpread = 0x9e3779b97f4a7c15;

std::uint64_t KeyOfNumber(double number) {
  if (number == 0) number = 0;  // -0 equals 0
  return (std::bit_cast<std::uint64_t>(number) >> kBucketBits) * kSpread;
}

// Of numeric and date-time values.
double NumberOf(const ScoreValue& value) { return static_cast<const NumericValue&>(value).GetNumber(); }

std::uint64_t KeyOfText(const StringValue& text) {
  return std::hash<std::string_view>()(TrimTrailingBlanks(text.GetText()));
}

}  // namespace

std::uint64_t ValueIndex::KeyOf(const ScoreValue& value) {
  const StringValue* const text = AsString(&value);
  return text != nullptr ? KeyOfText(*text) : KeyOfNumber(NumberOf(value));
}

ValueIndex::Keys ValueIndex::KeysOf(const ScoreValue& value) {
  if (const StringValue* const text = AsString(&value)) {
    const std::uint64_t key = KeyOfText(*text);
    return {key, key};
  }
  // Infinities and NaN stay what they are; nothing finite equals them.
  constexpr double kLargest = std::numeric_limits<double>::max();
  const double number = NumberOf(value);
  if (!std::isfinite(number)) return {KeyOfNumber(number), KeyOfNumber(number)};
  return {KeyOfNumber(number * (1 - kReach)),
          KeyOfNumber(std::clamp(number * (1 + kReach), -kLargest, kLargest))};
}

void ValueIndex::Append(const ScoreValue* value) {
  if (value != nullptr) return Link(KeyOf(*value));
  fNext.push_back(-1);
}

void ValueIndex::Append(const ScoreValue& first, const ScoreValue& second) {
  Link(Joined(KeyOf(first), KeyOf(second)));
}

void ValueIndex::Link(std::uint64_t key) {
  const int position = Size();
  fNext.push_back(-1);
  Chain* const chain = fChains.Find(key);
  if (chain == nullptr) return fChains.Add({key, position, position});
  fNext[static_cast<std::size_t>(chain->last)] = position;
  chain->last = position;
}

bool ValueIndex::Remove(int position, const ScoreValue* value) {
  return value == nullptr || Unlink(position, KeyOf(*value));
}

bool ValueIndex::Remove(int position, const ScoreValue& first, const ScoreValue& second) {
  return Unlink(position, Joined(KeyOf(first), KeyOf(second)));
}

bool ValueIndex::Unlink(int position, std::uint64_t key) {
  Chain* const chain = fChains.Find(key);
  if (chain == nullptr) return false;
  int before = -1;
  int link = chain->first;
  while (link >= 0 && link != position) {
    before = link;
    link = fNext[static_cast<std::size_t>(link)];
  }
  if (link < 0) return false;
  const int after = fNext[static_cast<std::size_t>(position)];
  if (before < 0 && after < 0) {
    fChains.Erase(key);
    return true;
  }
  (before < 0 ? chain->first : fNext[static_cast<std::size_t>(before)]) = after;
  if (after < 0) chain->last = before;
  return true;
}

void ValueIndex::Clear() {
  fChains.Clear();
  fNext.clear();
}

}  // namespace KxVeyra_940
