#include "data/Calendar.h"

#include "data/Truncate.h"

namespace KxVeyra_940 {

namespace {

constexpr long long kDaysPerEra = 146097;  // 400 years
constexpr long long kJulianDayOf1970 = 2440588;

// How many multiples of `step` lie in [0, number); negative for negative numbers.
long long MultiplesBefore(long long number, long long step) {
  return number / step + (number % step > 0 ? 1 : 0);
}

long long FloorDivide(long long number, long long divisor) {
  return number / divisor - (number % divisor < 0 ? 1 : 0);
}

}  // namespace

bool IsLeapYearOf(long long year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

long long LeapYearsBefore(long long year) {
  return MultiplesBefore(year, 4) - MultiplesBefore(year, 100) + MultiplesBefore(year, 400);
}

CalendarDate DateOfDay(long long daysSince1970) {
  // Richards' algorithm needs a Julian day that is not negative: move the day into the era of 1970 and back.
  const long long era = FloorDivide(daysSince1970, kDaysPerEra);
  const long long julianDay = daysSince1970 - era * kDaysPerEra + kJulianDayOf1970;
  const long long f = julianDay + 1401 + ((4 * julianDay + 274277) / kDaysPerEra) * 3 / 4 - 38;
  const long long e = 4 * f + 3;
  const long long g = e % 1461 / 4;
  const long long h = 5 * g + 2;
  const long long month = (h / 153 + 2) % 12 + 1;
  return {e / 1461 - 4716 + (12 + 2 - month) / 12 + 400 * era, month, h % 153 / 5 + 1};
}

DayAndSeconds SplitSeconds(double seconds) {
  const long long whole = TruncateTo<long long>(seconds);
  const long long day = FloorDivide(whole, kSecondsPerDay);
  const long long rest = whole % kSecondsPerDay;
  return {day, rest < 0 ? rest + kSecondsPerDay : rest};
}

}  // namespace KxVeyra_940
