#pragma once

/// Lets a chosen allocation of this thread fail, and counts those that are alive. One program gets
/// them from operator new, another from malloc, which is below operator new.
namespace Faults {

/// From now on the `nth` allocation fails, once. The first is number 1.
void Arm(long nth);

/// Ends what Arm began, and tells whether the allocation came and failed.
bool Disarm();

/// How many allocations of this thread are alive.
long Live();

}  // namespace Faults
