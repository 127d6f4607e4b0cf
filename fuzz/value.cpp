// Decodes one packed value with the library and with the reference decoder.

#include "fuzz/Fuzz.h"
#include "tests/support/BothDecoders.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 10000) return 0;  // the reference decoder is recursive
    Require(SameValueOnBothDecoders(InputText(data, size)));
    return 0;
}
