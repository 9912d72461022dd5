// A date, a time of day, or a date and time: seconds since 1970-01-01 00:00:00 (since midnight for times of
// day) and a kind.
//
//   DateTimeValue due("2020-02-29", ScoreDictVar::kDate);   // 1582934400 seconds, GetDouble() 18321 days
//
// Threads: const operations may be called by several threads; a value that changes belongs to one.
// Nothing throws; parsing allocates nothing.

#ifndef VEYRA_DATA_DATETIMEVALUE_H_
#define VEYRA_DATA_DATETIMEVALUE_H_

#include <string>

#include "data/NumericValue.h"
#include "veyra/Export.h"
#include "veyra/ScoreDictVar.h"

namespace KxVeyra_940 {

class VEYRA_API DateTimeValue : public NumericValue {
 public:
  enum DateTimeValType : int {
    kDateVal = 0,
    kTimeVal = 1,
    kDateTimeVal = 2,
  };

  // Indexed by month 1..12; entry 0 is 0.
  static constexpr int fDaysBeforeMonth[13] = {0, 0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};
  static constexpr int fDaysInMonth[13] = {0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

  DateTimeValue() = default;  // system-missing, kDateTimeVal
  DateTimeValue(const std::string& text, ScoreDictVar::DateTimeType type);
  // `number` is in the representation of `type`: days or seconds since its epoch.
  DateTimeValue(double number, ScoreDictVar::DateTimeType type);
  DateTimeValue(double seconds, DateTimeValType kind);
  DateTimeValue(const DateTimeValue& other) = default;
  DateTimeValue& operator=(const DateTimeValue& other) = default;
  ~DateTimeValue() override;

  // Takes numbers as seconds, date-times with their kind; null and texts make it system-missing.
  void SetValue(const ScoreValue* value) override;
  ScoreValue* GetValue() const override;
  ScoreValue* Clone() const override;
  // A date-time of the same kind and exactly the same number.
  bool operator==(const ScoreValue& value) const override;
  // As for numbers; two date-times compare in stored seconds whatever their kinds.
  bool operator>(const ScoreValue& value) const override;
  bool operator<(const ScoreValue& value) const override;
  bool operator<=(const ScoreValue& value) const override;
  bool operator>=(const ScoreValue& value) const override;
  int GetInt() const override;
  // Days since 1970-01-01 for a date, else the stored seconds; system-missing stays so.
  double GetDouble() const override;
  // Such as 2021-3-7, 9:5:0 and 2021-3-7T9:5:0; "Undefined" for the system-missing value and below.
  std::string GetString() const override;
  ValueType GetType() const override;
  virtual void SetDateTimeType(DateTimeValType kind);
  virtual DateTimeValType GetDateTimeType() const;

  void SetDateTimeValue(double number, ScoreDictVar::DateTimeType type);
  void SetDateTimeValue(double seconds, DateTimeValType kind);
  // Set the number only.  System-missing for a text that does not parse, an empty text and an unknown type.
  void FromString(const std::string& text, ScoreDictVar::DateTimeType type);
  void FromNumeric(double number, ScoreDictVar::DateTimeType type);
  // The number in the representation of `type`; system-missing for an unknown type.
  double GetDoubleValue(ScoreDictVar::DateTimeType type) const;
  ScoreValue* GetValue(ScoreDictVar::DateTimeType type) const;  // the same as a new value; the caller owns it
  // The stored number with six digits after the point; "Undefined" for the system-missing value.
  std::string GetNumericString() const;

  // Parts of the stored number; system-missing for the system-missing value.
  double ExtractYear() const;
  double ExtractMonth() const;
  double ExtractDay() const;
  double ExtractHour() const;
  double ExtractMinute() const;
  double ExtractSecond() const;
  // This minus other, with fractions; a year has 365.25 days, a month 30.4375.  System-missing when one is.
  double ComputeDurationYears(const DateTimeValue& other) const;
  double ComputeDurationMonths(const DateTimeValue& other) const;
  double ComputeDurationDays(const DateTimeValue& other) const;
  double ComputeDurationHours(const DateTimeValue& other) const;
  double ComputeDurationMinutes(const DateTimeValue& other) const;
  double ComputeDurationSeconds(const DateTimeValue& other) const;

  static void ExtractDate(double seconds, long long& year, long long& month, long long& day);
  static void ExtractTime(double seconds, long long& hour, long long& minute, long long& second);
  // "2020-02-29", "12:30:05" and the two joined by "T"; blanks around the parts are allowed.  An empty text
  // is accepted: ParseDate and ParseTime leave the parts alone, ParseDateTime sets them to 0.
  static bool ParseDate(const std::string& text, long long& year, long long& month, long long& day);
  static bool ParseTime(const std::string& text, long long& hour, long long& minute, long long& second);
  static bool ParseDateTime(const std::string& text, long long& year, long long& month, long long& day,
                            long long& hour, long long& minute, long long& second);
  // A plain decimal number and nothing else; `number` changes only then.
  static bool ParseDouble(const std::string& text, double& number);
  // Without `character` at both ends; a text of nothing else is returned as it is.
  static std::string TrimString(const std::string& text, char character);
  static bool IsValidDate(long long year, long long month, long long day);
  static bool IsValidTime(long long hour, long long minute, long long second);
  static bool IsValidDateTime(const std::string& text, ScoreDictVar::DateTimeType type);

  static bool IsLeapYear(long long year);
  static long long DaysInMonth(long long year, long long month);  // 0 for a month outside 1..12
  static long long DaysInYear(long long year);
  static long long DaysBeforeMonth(long long year, long long month);  // 0 for a month outside 1..12
  // Days from 1 January of `from` to 1 January of `to`; negative when that is earlier.
  static long long DaysBetweenYear(long long from, long long to);
  // Leap years in [smaller, larger).
  static long long NumberOfLeapYear(long long from, long long to);
  static DateTimeValType GetValType(ScoreDictVar::DateTimeType type);
  static ScoreDictVar::DateTimeType GetDateTimeType(DateTimeValType kind);

 private:
  DateTimeValType fKind = kDateTimeVal;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_DATETIMEVALUE_H_
