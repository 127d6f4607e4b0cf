#pragma once

#include <algorithm>

#include "contracts/DataEngineExport.h"

/// A pair of times, the start not after the end. It has no JSON form and changes only by
/// assignment.
///
/// Thread safety: not safe for concurrent use.
class DATAENGINE_EXPORT CDETimeRange {
  public:
    /// Constructs a range with both times 0.
    CDETimeRange() = default;

    /// Constructs the range between two times, given in either order.
    CDETimeRange(long long a, long long b) : startTime_(std::min(a, b)), endTime_(std::max(a, b)) {}
    /// Copies both times. A move copies, so the source keeps them. @{
    CDETimeRange(const CDETimeRange&) = default;
    CDETimeRange& operator=(const CDETimeRange&) = default;
    /// @}

    /// Returns the earlier time, in milliseconds since the Unix epoch.
    long long GetStartTime() const { return startTime_; }
    /// Returns the later time, in milliseconds since the Unix epoch.
    long long GetEndTime() const { return endTime_; }

  private:
    long long startTime_ = 0;
    long long endTime_ = 0;
};
