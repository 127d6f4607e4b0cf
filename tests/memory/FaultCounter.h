#pragma once

/// What the replaced allocation functions ask before and tell after. Plain numbers of a thread, for
/// nothing here may allocate.
struct FaultCounter {
    long untilFailure = 0;  ///< Allocations up to the one that fails, itself included; 0 for none.
    bool failed = false;
    long live = 0;

    /// Whether the allocation at hand is the one to fail.
    bool Strikes() {
        if (untilFailure == 0 || --untilFailure != 0) return false;
        failed = true;
        return true;
    }
};

extern thread_local FaultCounter faultCounter;
