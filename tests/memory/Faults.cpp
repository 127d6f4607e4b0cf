#include "tests/memory/Faults.h"

#include "tests/memory/FaultCounter.h"

thread_local FaultCounter faultCounter;

void Faults::Arm(long nth) {
    faultCounter.untilFailure = nth;
    faultCounter.failed = false;
}

bool Faults::Disarm() {
    faultCounter.untilFailure = 0;
    return faultCounter.failed;
}

long Faults::Live() {
    return faultCounter.live;
}
