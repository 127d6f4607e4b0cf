#pragma once

#include <ctime>

class TimerHelper {
  public:
    /// `time` counts seconds here, where the bundled library counts milliseconds.
    static tm Time2UTCTm(long long time) {
        const std::time_t seconds = time;
        tm result{};
        gmtime_r(&seconds, &result);
        return result;
    }
};
