#include "data/DateTimeValue.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

#include "data/Calendar.h"
#include "data/ReadNumber.h"
#include "data/Truncate.h"

namespace KxVeyra_940 {

namespace {

constexpr double kDay = static_cast<double>(kSecondsPerDay);
constexpr double kDaysPerYear = 365.25;
constexpr double kDaysPerMonth = 30.4375;
constexpr int kEpochYear = 1970;

// How a document's date-time type relates to the stored seconds:
// seconds = (number + offset) * unit, both counted in the type's own unit.
struct TypeRow {
  ScoreDictVar::DateTimeType type;
  DateTimeValue::DateTimeValType kind;
  double offset;
  double unit;
};

constexpr double kSecond = 1;
constexpr TypeRow kTypes[] = {
    {ScoreDictVar::kNoDateTime, DateTimeValue::kDateTimeVal, 0, kSecond},  // holds no number
    {ScoreDictVar::kDate, DateTimeValue::kDateVal, 0, kSecond},
    {ScoreDictVar::kTime, DateTimeValue::kTimeVal, 0, kSecond},
    {ScoreDictVar::kDateTime, DateTimeValue::kDateTimeVal, 0, kSecond},
    {ScoreDictVar::kDateDaysSince0, DateTimeValue::kDateVal, -719528, kDay},
    {ScoreDictVar::kDateDaysSince1960, DateTimeValue::kDateVal, -3653, kDay},
    {ScoreDictVar::kDateDaysSince1970, DateTimeValue::kDateVal, 0, kDay},
    {ScoreDictVar::kDateDaysSince1980, DateTimeValue::kDateVal, 3652, kDay},
    {ScoreDictVar::kTimeSeconds, DateTimeValue::kTimeVal, 0, kSecond},
    {ScoreDictVar::kDateTimeSecondsSince0, DateTimeValue::kDateTimeVal, -62167219200, kSecond},
    {ScoreDictVar::kDateTimeSecondsSince1960, DateTimeValue::kDateTimeVal, -315619200, kSecond},
    {ScoreDictVar::kDateTimeSecondsSince1970, DateTimeValue::kDateTimeVal, 0, kSecond},
    {ScoreDictVar::kDateTimeSecondsSince1980, DateTimeValue::kDateTimeVal, 315532800, kSecond},
};

consteval bool IsInTypeOrder() {
  int number = 0;
  for (const TypeRow& row : kTypes)
    if (row.type != number++) return false;
  return number == ScoreDictVar::kDateTimeSecondsSince1980 + 1;
}
static_assert(IsInTypeOrder());

// The row of a type that has a number, else null.
const TypeRow* RowOf(ScoreDictVar::DateTimeType type) {
  return type > ScoreDictVar::kNoDateTime && type <= ScoreDictVar::kDateTimeSecondsSince1980 ? &kTypes[type]
                                                                                             : nullptr;
}

bool IsMonth(long long month) { return month >= 1 && month <= 12; }

std::string_view Trim(std::string_view text, char character) {
  const std::size_t first = text.find_first_not_of(character);
  if (first == std::string_view::npos) return text;
  return text.substr(first, text.find_last_not_of(character) - first + 1);
}

// Sets the whole number that a part begins with, 0 without one; false when it does not fit an int.
bool ReadPart(std::string_view part, long long& value) {
  int number = 0;
  const auto error = std::from_chars(part.data(), part.data() + part.size(), number).ec;
  value = number;
  return error != std::errc::result_out_of_range;
}

// Three whole numbers between separators.  Parts that are not there are -1; more than three are ignored.
// False for a number that is too large and a character that is neither digit, separator nor blank.
bool ParseParts(std::string_view text, char separator, long long (&parts)[3]) {
  std::fill(std::begin(parts), std::end(parts), -1);
  std::size_t start = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if ((c < '0' || c > '9') && c != separator && c != ' ') return false;
    const bool last = i + 1 == text.size();
    if (c != separator && !last) continue;
    // The last character belongs to its part, a separator too.
    const std::string_view part = Trim(text.substr(start, (last ? i + 1 : i) - start), ' ');
    const auto free = std::find_if(std::begin(parts), std::end(parts), [](long long n) { return n < 0; });
    if (free != std::end(parts) && !ReadPart(part, *free)) return false;
    start = i + 1;
  }
  return true;
}

bool ParseDateText(std::string_view text, long long& year, long long& month, long long& day) {
  if (text.empty()) return true;
  long long parts[3];
  const bool parsed = ParseParts(text, '-', parts);
  year = parts[0];
  month = parts[1];
  day = parts[2];
  return parsed && DateTimeValue::IsValidDate(year, month, day);
}

bool ParseTimeText(std::string_view text, long long& hour, long long& minute, long long& second) {
  if (text.empty()) return true;
  long long parts[3];
  const bool parsed = ParseParts(text, ':', parts);
  hour = parts[0];
  minute = parts[1];
  second = parts[2];
  return parsed && DateTimeValue::IsValidTime(hour, minute, second);
}

double SecondsOfDate(long long year, long long month, long long day) {
  return static_cast<double>(DateTimeValue::DaysBetweenYear(kEpochYear, year) +
                             DateTimeValue::DaysBeforeMonth(year, month) + day - 1) *
         kDay;
}

double SecondsOfTime(long long hour, long long minute, long long second) {
  return static_cast<double>(hour * 3600 + minute * 60 + second);
}

double DateTextToSeconds(const std::string& text) {
  long long y = 0, m = 0, d = 0;
  if (text.empty() || !ParseDateText(text, y, m, d)) return NumericValue::gSysmisValue;
  return SecondsOfDate(y, m, d);
}

double TimeTextToSeconds(const std::string& text) {
  long long h = 0, m = 0, s = 0;
  if (text.empty() || !ParseTimeText(text, h, m, s)) return NumericValue::gSysmisValue;
  return SecondsOfTime(h, m, s);
}

double DateTimeTextToSeconds(const std::string& text) {
  long long y = 0, m = 0, d = 0, h = 0, mi = 0, s = 0;
  // An empty text, and an empty date, are accepted by the parser but are no date.
  if (!DateTimeValue::ParseDateTime(text, y, m, d, h, mi, s) || !DateTimeValue::IsValidDate(y, m, d))
    return NumericValue::gSysmisValue;
  return SecondsOfDate(y, m, d) + SecondsOfTime(h, mi, s);
}

// Appends whole numbers with a separator between them.
std::string& AppendParts(std::string& text, char separator, long long first, long long second,
                         long long third) {
  text += std::to_string(first);
  text += separator;
  text += std::to_string(second);
  text += separator;
  return text += std::to_string(third);
}

// Whether every sign of one kind but the last is no concern and the last stands where a sign may.
bool IsLastSignInPlace(std::string_view text, char sign, std::size_t exponentMark) {
  const std::size_t last = text.rfind(sign);
  return last == std::string_view::npos || last == 0 || last == exponentMark + 1;
}

bool IsPlainNumber(std::string_view text) {
  constexpr std::size_t kNone = std::string_view::npos;
  if (text.empty() || text.find_first_not_of("0123456789+-.eE") != kNone) return false;
  const char last = text.back();
  if (last == '+' || last == '-' || last == '.') return false;

  const std::size_t mark = text.find_first_of("eE");
  if (mark != text.find_last_of("eE") || mark == 0 || mark == text.size() - 1) return false;
  const std::size_t point = text.find('.');
  if (point != text.rfind('.')) return false;
  if (mark == kNone) return text.find_first_of("+-", 1) == kNone;
  if (point != kNone && point + 1 >= mark) return false;
  return IsLastSignInPlace(text, '-', mark) && IsLastSignInPlace(text, '+', mark);
}

struct TimeOfDay {
  long long hour;
  long long minute;
  long long second;
};

TimeOfDay TimeOf(double stored) {
  const long long seconds = SplitSeconds(stored).seconds;
  return {seconds / 3600, seconds % 3600 / 60, seconds % 60};
}

}  // namespace

DateTimeValue::DateTimeValue(const std::string& text, ScoreDictVar::DateTimeType type)
    : fKind(GetValType(type)) {
  FromString(text, type);
}

DateTimeValue::DateTimeValue(double number, ScoreDictVar::DateTimeType type) {
  SetDateTimeValue(number, type);
}

DateTimeValue::DateTimeValue(double seconds, DateTimeValType kind) : NumericValue(seconds), fKind(kind) {}

DateTimeValue::~DateTimeValue() = default;

void DateTimeValue::SetValue(const ScoreValue* value) {
  if (value != nullptr && value->GetType() == kNumericValueType) {
    SetDoubleValue(value->GetDouble());
  } else if (value != nullptr && value->GetType() == kDateTimeValueType) {
    *this = static_cast<const DateTimeValue&>(*value);
  } else {
    SetDoubleValue(gSysmisValue);
  }
}

ScoreValue* DateTimeValue::GetValue() const { return new DateTimeValue(*this); }

ScoreValue* DateTimeValue::Clone() const { return new DateTimeValue(*this); }

bool DateTimeValue::operator==(const ScoreValue& value) const {
  if (value.GetType() != kDateTimeValueType) return false;
  const auto& other = static_cast<const DateTimeValue&>(value);
  return GetNumber() == other.GetNumber() && fKind == other.fKind;
}

namespace {

// The other side of an ordering: the stored seconds of a date-time, every other value as it is.
class OtherSide {
 public:
  explicit OtherSide(const ScoreValue& value) : fValue(&value) {
    if (value.GetType() != ScoreValue::kDateTimeValueType) return;
    fSeconds.SetDoubleValue(static_cast<const DateTimeValue&>(value).GetNumber());
    fValue = &fSeconds;
  }
  const ScoreValue& operator*() const { return *fValue; }

 private:
  NumericValue fSeconds;
  const ScoreValue* fValue;
};

}  // namespace

bool DateTimeValue::operator>(const ScoreValue& value) const {
  return NumericValue::operator>(*OtherSide(value));
}

bool DateTimeValue::operator<(const ScoreValue& value) const {
  return NumericValue::operator<(*OtherSide(value));
}

bool DateTimeValue::operator<=(const ScoreValue& value) const {
  return NumericValue::operator<=(*OtherSide(value));
}

bool DateTimeValue::operator>=(const ScoreValue& value) const {
  return NumericValue::operator>=(*OtherSide(value));
}

int DateTimeValue::GetInt() const { return TruncateToInt(GetDouble()); }

double DateTimeValue::GetDouble() const {
  return fKind == kDateVal && !IsSystemMissingValue() ? GetNumber() / kDay : GetNumber();
}

std::string DateTimeValue::GetString() const {
  if (GetNumber() <= gSysmisValue || !std::isfinite(GetNumber())) return "Undefined";
  if (fKind != kDateVal && fKind != kTimeVal && fKind != kDateTimeVal) return NumericValue::GetString();
  const auto [day, seconds] = SplitSeconds(GetNumber());
  std::string text;
  if (fKind != kTimeVal) {
    const CalendarDate date = DateOfDay(day);
    AppendParts(text, '-', date.year, date.month, date.day);
  }
  if (fKind == kDateTimeVal) text += 'T';
  if (fKind != kDateVal) AppendParts(text, ':', seconds / 3600, seconds % 3600 / 60, seconds % 60);
  return text;
}

ScoreValue::ValueType DateTimeValue::GetType() const { return kDateTimeValueType; }

void DateTimeValue::SetDateTimeType(DateTimeValType kind) { fKind = kind; }

DateTimeValue::DateTimeValType DateTimeValue::GetDateTimeType() const { return fKind; }

void DateTimeValue::SetDateTimeValue(double number, ScoreDictVar::DateTimeType type) {
  FromNumeric(number, type);
  fKind = GetValType(type);
}

void DateTimeValue::SetDateTimeValue(double seconds, DateTimeValType kind) {
  SetDoubleValue(seconds);
  fKind = kind;
}

void DateTimeValue::FromString(const std::string& text, ScoreDictVar::DateTimeType type) {
  switch (type) {
    case ScoreDictVar::kDate:
      return SetDoubleValue(DateTextToSeconds(text));
    case ScoreDictVar::kTime:
      return SetDoubleValue(TimeTextToSeconds(text));
    case ScoreDictVar::kDateTime:
      return SetDoubleValue(DateTimeTextToSeconds(text));
    default:
      return FromNumeric(ReadNumber(text), type);
  }
}

void DateTimeValue::FromNumeric(double number, ScoreDictVar::DateTimeType type) {
  const TypeRow* const row = RowOf(type);
  const bool missing = row == nullptr || NumericValue::IsSystemMissingValue(number);
  SetDoubleValue(missing ? gSysmisValue : (number + row->offset) * row->unit);
}

double DateTimeValue::GetDoubleValue(ScoreDictVar::DateTimeType type) const {
  const TypeRow* const row = RowOf(type);
  if (row == nullptr || IsSystemMissingValue()) return gSysmisValue;
  return GetNumber() / row->unit - row->offset;
}

ScoreValue* DateTimeValue::GetValue(ScoreDictVar::DateTimeType type) const {
  return new NumericValue(GetDoubleValue(type));
}

std::string DateTimeValue::GetNumericString() const {
  if (IsSystemMissingValue()) return "Undefined";
  char text[400];  // the largest double has 309 digits before the point
  const auto end = std::to_chars(text, text + sizeof text, GetNumber(), std::chars_format::fixed, 6).ptr;
  return std::string(text, end);
}

double DateTimeValue::ExtractYear() const {
  if (IsSystemMissingValue()) return gSysmisValue;
  return static_cast<double>(DateOfDay(SplitSeconds(GetNumber()).day).year);
}

double DateTimeValue::ExtractMonth() const {
  if (IsSystemMissingValue()) return gSysmisValue;
  return static_cast<double>(DateOfDay(SplitSeconds(GetNumber()).day).month);
}

double DateTimeValue::ExtractDay() const {
  if (IsSystemMissingValue()) return gSysmisValue;
  return static_cast<double>(DateOfDay(SplitSeconds(GetNumber()).day).day);
}

double DateTimeValue::ExtractHour() const {
  return IsSystemMissingValue() ? gSysmisValue : static_cast<double>(TimeOf(GetNumber()).hour);
}

double DateTimeValue::ExtractMinute() const {
  return IsSystemMissingValue() ? gSysmisValue : static_cast<double>(TimeOf(GetNumber()).minute);
}

double DateTimeValue::ExtractSecond() const {
  return IsSystemMissingValue() ? gSysmisValue : static_cast<double>(TimeOf(GetNumber()).second);
}

double DateTimeValue::ComputeDurationSeconds(const DateTimeValue& other) const {
  if (IsSystemMissingValue() || other.IsSystemMissingValue()) return gSysmisValue;
  return GetNumber() - other.GetNumber();
}

namespace {

// A duration in seconds, divided; a missing one stays missing.
double Divided(double seconds, double first, double second = 1) {
  return NumericValue::IsSystemMissingValue(seconds) ? seconds : seconds / first / second;
}

}  // namespace

double DateTimeValue::ComputeDurationYears(const DateTimeValue& other) const {
  return Divided(ComputeDurationSeconds(other), kDay, kDaysPerYear);
}

double DateTimeValue::ComputeDurationMonths(const DateTimeValue& other) const {
  return Divided(ComputeDurationSeconds(other), kDay, kDaysPerMonth);
}

double DateTimeValue::ComputeDurationDays(const DateTimeValue& other) const {
  return Divided(ComputeDurationSeconds(other), kDay);
}

double DateTimeValue::ComputeDurationHours(const DateTimeValue& other) const {
  return Divided(ComputeDurationSeconds(other), 3600);
}

double DateTimeValue::ComputeDurationMinutes(const DateTimeValue& other) const {
  return Divided(ComputeDurationSeconds(other), 60);
}

void DateTimeValue::ExtractDate(double seconds, long long& year, long long& month, long long& day) {
  const CalendarDate date = DateOfDay(SplitSeconds(seconds).day);
  year = date.year;
  month = date.month;
  day = date.day;
}

void DateTimeValue::ExtractTime(double seconds, long long& hour, long long& minute, long long& second) {
  const TimeOfDay time = TimeOf(seconds);
  hour = time.hour;
  minute = time.minute;
  second = time.second;
}

bool DateTimeValue::ParseDate(const std::string& text, long long& year, long long& month, long long& day) {
  return ParseDateText(text, year, month, day);
}

bool DateTimeValue::ParseTime(const std::string& text, long long& hour, long long& minute,
                              long long& second) {
  return ParseTimeText(text, hour, minute, second);
}

bool DateTimeValue::ParseDateTime(const std::string& text, long long& year, long long& month, long long& day,
                                  long long& hour, long long& minute, long long& second) {
  year = month = day = hour = minute = second = 0;
  if (text.empty()) return true;
  const std::string_view whole = text;
  const std::size_t middle = whole.find('T');
  if (middle == std::string_view::npos) return false;
  return ParseDateText(whole.substr(0, middle), year, month, day) &&
         ParseTimeText(whole.substr(middle + 1), hour, minute, second);
}

bool DateTimeValue::ParseDouble(const std::string& text, double& number) {
  if (!IsPlainNumber(text)) return false;
  number = ReadNumber(text);
  return true;
}

std::string DateTimeValue::TrimString(const std::string& text, char character) {
  return std::string(Trim(text, character));
}

bool DateTimeValue::IsValidDate(long long year, long long month, long long day) {
  return IsMonth(month) && day >= 1 && day <= DaysInMonth(year, month);
}

bool DateTimeValue::IsValidTime(long long hour, long long minute, long long second) {
  return hour >= 0 && hour < 24 && minute >= 0 && minute < 60 && second >= 0 && second < 60;
}

bool DateTimeValue::IsValidDateTime(const std::string& text, ScoreDictVar::DateTimeType type) {
  long long y = 0, m = 0, d = 0, h = 0, mi = 0, s = 0;
  double number = 0;
  switch (type) {
    case ScoreDictVar::kNoDateTime:
      return true;
    case ScoreDictVar::kDate:
      return ParseDate(text, y, m, d);
    case ScoreDictVar::kTime:
      return ParseTime(text, h, mi, s);
    case ScoreDictVar::kDateTime:
      return ParseDateTime(text, y, m, d, h, mi, s);
    default:
      return RowOf(type) != nullptr && ParseDouble(text, number);
  }
}

bool DateTimeValue::IsLeapYear(long long year) { return IsLeapYearOf(year); }

long long DateTimeValue::DaysInMonth(long long year, long long month) {
  if (!IsMonth(month)) return 0;
  return fDaysInMonth[month] + (month == 2 && IsLeapYear(year) ? 1 : 0);
}

long long DateTimeValue::DaysInYear(long long year) { return IsLeapYear(year) ? 366 : 365; }

long long DateTimeValue::DaysBeforeMonth(long long year, long long month) {
  if (!IsMonth(month)) return 0;
  return fDaysBeforeMonth[month] + (month >= 3 && IsLeapYear(year) ? 1 : 0);
}

long long DateTimeValue::DaysBetweenYear(long long from, long long to) {
  // Unsigned arithmetic wraps around instead of overflowing for years that no calendar reaches.
  using Count = unsigned long long;
  const Count years = static_cast<Count>(to) - static_cast<Count>(from);
  const Count leapDays = static_cast<Count>(LeapYearsBefore(to)) - static_cast<Count>(LeapYearsBefore(from));
  return static_cast<long long>(365 * years + leapDays);
}

long long DateTimeValue::NumberOfLeapYear(long long from, long long to) {
  return LeapYearsBefore(std::max(from, to)) - LeapYearsBefore(std::min(from, to));
}

DateTimeValue::DateTimeValType DateTimeValue::GetValType(ScoreDictVar::DateTimeType type) {
  const TypeRow* const row = RowOf(type);
  return row == nullptr ? kDateTimeVal : row->kind;
}

ScoreDictVar::DateTimeType DateTimeValue::GetDateTimeType(DateTimeValType kind) {
  if (kind == kDateVal) return ScoreDictVar::kDate;
  return kind == kTimeVal ? ScoreDictVar::kTime : ScoreDictVar::kDateTime;
}

}  // namespace KxVeyra_940
