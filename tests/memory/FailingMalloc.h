#pragma once

/// Makes a chosen allocation of this thread fail, and counts the blocks that it holds.
struct FailingMalloc {
    long untilFailure = 0;  ///< Allocations up to and including the one that fails; 0 for none.
    long live = 0;          ///< Blocks allocated and not yet freed.
};

extern thread_local FailingMalloc failingMalloc;
