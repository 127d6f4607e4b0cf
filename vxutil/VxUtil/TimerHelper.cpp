#include <VxUtil/TimerHelper.h>

namespace {

struct Division {
    long long quotient;
    long long remainder;
};

// Rounds towards minus infinity: the remainder is never negative.
constexpr Division FloorDivide(long long number, long long divisor) {
    const long long remainder = number % divisor;
    if (remainder >= 0) return {number / divisor, remainder};
    return {number / divisor - 1, remainder + divisor};
}

// Years start on March 1st here, so that a leap day is the last day of its year. They are counted
// in eras of 400 years, after which the calendar repeats.
constexpr long long kDaysOfEra = 146097;
constexpr long long kEpochDay = 719468;  // 1970-01-01, counted from 0000-03-01

constexpr bool IsLeapYear(long long year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

}  // namespace

// gmtime_r computes the same, but its first call in a process reads the environment and the time
// zone files, and every call takes a lock that all threads share.
std::tm TimerHelper::Time2UTCTm(long long time) noexcept {
    const Division day = FloorDivide(time, 24LL * 60 * 60 * 1000);
    const long long second = day.remainder / 1000;

    const Division era = FloorDivide(day.quotient + kEpochDay, kDaysOfEra);
    const long long dayOfEra = era.remainder;
    const long long yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const long long dayFromMarch = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    // 153 days are five months that start with one of 31 days: March to July, August to December.
    const long long monthFromMarch = (5 * dayFromMarch + 2) / 153;
    const bool nextYear = monthFromMarch >= 10;
    const long long year = era.quotient * 400 + yearOfEra + (nextYear ? 1 : 0);

    std::tm calendar{};
    calendar.tm_sec = static_cast<int>(second % 60);
    calendar.tm_min = static_cast<int>(second / 60 % 60);
    calendar.tm_hour = static_cast<int>(second / 3600);
    calendar.tm_mday = static_cast<int>(dayFromMarch - (153 * monthFromMarch + 2) / 5 + 1);
    calendar.tm_mon = static_cast<int>(nextYear ? monthFromMarch - 10 : monthFromMarch + 2);
    calendar.tm_year = static_cast<int>(year - 1900);
    calendar.tm_wday = static_cast<int>(FloorDivide(day.quotient + 4, 7).remainder);
    calendar.tm_yday = static_cast<int>(nextYear ? dayFromMarch - 306
                                                 : dayFromMarch + 59 + (IsLeapYear(year) ? 1 : 0));
    return calendar;
}
