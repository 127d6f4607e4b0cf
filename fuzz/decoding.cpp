// Decodes a selection. The input consists of schema, offsets and selection as JSON text and of the
// packed bytes, separated by zero bytes.

#include "fuzz/Fuzz.h"
#include "tests/support/BothDecoders.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 10000) return 0;  // the reference decoder is recursive
    const std::vector<std::string> parts = SplitAtZeros(InputText(data, size), 4);
    Require(SameDecodingOnBothDecoders(parts[3], JsonOrNull(parts[0]), JsonOrNull(parts[1]),
                                       JsonOrNull(parts[2])));
    return 0;
}
