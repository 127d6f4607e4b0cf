#pragma once

/// Makes a chosen allocation of this thread fail, and counts the memory that it holds.
struct FailingMalloc {
    long untilFailure = 0;  ///< Allocations up to and including the one that fails; 0 for none.
    long live = 0;          ///< Blocks allocated and not yet freed.
    long bytes = 0;         ///< Their usable bytes,
    long peak = 0;          ///< and the most that there have been.
};

extern thread_local FailingMalloc failingMalloc;
