// Whole decodings. The input holds schema, offsets and selection as JSON texts and the packed
// bytes, with a zero byte between one and the next.

#include <sstream>

#include "fuzz/Fuzz.h"
#include "tests/support/BothDecoders.h"

namespace {

/// Null for what is no JSON.
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
