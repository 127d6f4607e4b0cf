#pragma once

#include <algorithm>

#include "contracts/DataEngineExport.h"

/// A pair of times whose start is never behind its end. It has no JSON form and changes only by
/// assignment.
///
/// Thread rule: an object belongs to one thread at a time.
class DATAENGINE_EXPORT CDETimeRange {
  public:
    /// Both times 0.
    CDETimeRange() = default;

    /// The range between two times, given in either order.
    CDETimeRange(long long a, long long b) : startTime_(std::min(a, b)), endTime_(std::max(a, b)) {}
    /// Copies both times; a move is a copy. @{
    CDETimeRange(const CDETimeRange&) = default;
    CDETimeRange& operator=(const CDETimeRange&) = default;
    /// @}

    /// The earlier time, in milliseconds since the Unix epoch.
    long long GetStartTime() const { return startTime_; }
    /// The later time, in milliseconds since the Unix epoch.
    long long GetEndTime() const { return endTime_; }

  private:
    long long startTime_ = 0;
    long long endTime_ = 0;
};
