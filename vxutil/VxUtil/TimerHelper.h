#pragma once

#include <ctime>

#include <VxUtil/VxUtilExport.h>

/// What times mean: milliseconds since the Unix epoch.
class VXUTIL_EXPORT TimerHelper {
  public:
    /// The calendar form of a time in UTC, in the proleptic Gregorian calendar, rounded down to the
    /// second; tm_isdst is 0. Every time has one: 64 bits of milliseconds span the years from
    /// -292275055 to 292278994.
    ///
    /// Thread rule: may be called from any thread at any time.
    static std::tm Time2UTCTm(long long time) noexcept;
};
