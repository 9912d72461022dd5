// A number.  The system-missing value, the lowest finite double, stands for the absence of one.
//
// Threads: const operations may be called by several threads; a value that changes belongs to one.
// Nothing throws.

#ifndef VEYRA_DATA_NUMERICVALUE_H_
#define VEYRA_DATA_NUMERICVALUE_H_

#include <limits>
#include <string>
#include <string_view>

#include "math/KxMV.h"
#include "veyra/Export.h"
#include "veyra/ScoreValue.h"

namespace KxVeyra_940 {

class VEYRA_API NumericValue : public ScoreValue {
 public:
  static constexpr double gSysmisValue = KxCommon_940::KxMV::Missing();
  static constexpr double SYSMIS = gSysmisValue;
  // Two numbers are equal when they differ by less than this times the larger magnitude.
  static constexpr double fEpsilon = 2.22045e-14;
  static constexpr double gInfinity = std::numeric_limits<double>::infinity();

  NumericValue() = default;  // system-missing
  explicit NumericValue(double number) : fNumber(number) {}
  explicit NumericValue(const std::string& text) { FromString(text); }
  NumericValue(const NumericValue& other) = default;
  NumericValue& operator=(const NumericValue& other) = default;
  ~NumericValue() override;

  static double GetSysmisValue() { return gSysmisValue; }
  static double GetInfinity() { return gInfinity; }
  static bool IsSystemMissingValue(double number) { return KxCommon_940::KxMV::IsMissing(number); }
  // Within the relative tolerance, strictly.  The system-missing value equals itself only, 0 equals 0 only,
  // and an infinity equals nothing.  Not transitive.
  static bool IsEqual(double left, double right);
  // The order of numbers that are there: those closer than an absolute 1e-14 are neither less nor greater.
  static bool IsLess(double left, double right) { return left - right <= -kOrderingTolerance; }
  static bool IsLessOrEqual(double left, double right) { return left - right < kOrderingTolerance; }

  void SetDoubleValue(double number) { fNumber = number; }
  // Sets the number that the text stands for (data/ReadNumber.h).
  void FromString(std::string_view text);
  // The stored number without a virtual call; seconds for dates and times.
  double GetNumber() const { return fNumber; }

  // Takes a numeric value's number; other kinds and null change nothing.
  void SetValue(const ScoreValue* value) override;
  ScoreValue* GetValue() const override;
  ScoreValue* Clone() const override;
  bool operator==(const ScoreValue& value) const override;
  // As operator==; false for null.
  bool Equal(const ScoreValue* value, bool noSpaceTrim, bool emptyStringOK) const override;
  // By an absolute tolerance of 1e-14 against the other's GetDouble(), whatever its kind.
  bool operator>(const ScoreValue& value) const override;
  bool operator<(const ScoreValue& value) const override;
  bool operator<=(const ScoreValue& value) const override;
  bool operator>=(const ScoreValue& value) const override;
  bool IsSystemMissingValue() const override;
  int GetInt() const override;
  double GetDouble() const override;
  // Six significant digits; "Undefined" for the system-missing value and below.
  std::string GetString() const override;
  ValueType GetType() const override;

 private:
  static constexpr double kOrderingTolerance = 1e-14;

  double fNumber = gSysmisValue;
};

// True: what the library stores as bytes is little-endian.
VEYRA_API bool IsLittleEndian();

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_NUMERICVALUE_H_
