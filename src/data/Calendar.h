// The proleptic Gregorian calendar.  Years are whole numbers, negative ones too; year 0 is a leap year.
//
// Pure functions.  Day counts wrap around beyond years of about 2.5e16.

#ifndef VEYRA_DATA_CALENDAR_H_
#define VEYRA_DATA_CALENDAR_H_

namespace KxVeyra_940 {

inline constexpr long long kSecondsPerDay = 86400;

struct CalendarDate {
  long long year;
  long long month;  // 1..12
  long long day;    // 1..31
};

struct DayAndSeconds {
  long long day;      // since 1970-01-01, rounded down
  long long seconds;  // 0..86399
};

bool IsLeapYearOf(long long year);
// The number of leap years before `year`, counted from year 0; negative before it.
long long LeapYearsBefore(long long year);
// The date of a day counted from 1970-01-01.
CalendarDate DateOfDay(long long daysSince1970);
// Splits seconds since 1970-01-01 00:00:00; a fraction is cut off.
DayAndSeconds SplitSeconds(double seconds);

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_CALENDAR_H_
