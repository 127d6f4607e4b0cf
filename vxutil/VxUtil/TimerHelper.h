#pragma once

#include <ctime>

#include <VxUtil/VxUtilExport.h>

/// Conversion of times, which are milliseconds since the Unix epoch.
///
/// Thread safety: may be called concurrently.
class VXUTIL_EXPORT TimerHelper {
  public:
    /// Returns the calendar time in UTC, in the proleptic Gregorian calendar, rounded down to the
    /// second; tm_isdst is 0. Defined for every argument: 64 bits of milliseconds span the years
    /// from -292275055 to 292278994.
    static std::tm Time2UTCTm(long long time) noexcept;
};
