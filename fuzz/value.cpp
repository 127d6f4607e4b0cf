// One packed value, decoded by the library and by way of text.

#include "fuzz/Fuzz.h"
#include "tests/support/BothDecoders.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 10000) return 0;  // the reference decoder is recursive
    Require(SameValueOnBothDecoders(InputText(data, size)));
    return 0;
}
