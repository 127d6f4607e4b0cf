// Decodes a selection. The input consists of schema, offsets and selection as JSON text and of the
// packed bytes, separated by zero bytes.

#include <sstream>

#include "fuzz/Fuzz.h"
#include "tests/support/BothDecoders.h"

namespace {

/// Returns the null value for text that is not JSON.
vxJson::Value ValueOf(const std::string& text) {
    std::istringstream stream(text);
    vxJson::Value value;
    vxJson::Reader().parse(stream, value, true);
    return value;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 10000) return 0;  // the reference decoder is recursive
    const std::vector<std::string> parts = SplitAtZeros(InputText(data, size), 4);
    Require(SameDecodingOnBothDecoders(parts[3], ValueOf(parts[0]), ValueOf(parts[1]),
                                       ValueOf(parts[2])));
    return 0;
}
