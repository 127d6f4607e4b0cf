// The header of a packed buffer, read by the library and by way of text.

#include "fuzz/Fuzz.h"
#include "tests/support/BothDecoders.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Require(SameHeaderOnBothDecoders(InputText(data, size)));
    return 0;
}
