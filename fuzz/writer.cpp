// One packed value, decoded, written into a frame and decoded again.

#include "fuzz/Fuzz.h"
#include "tests/structure/Decode.h"
#include "tests/support/RoundTrip.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string packed = InputText(data, size);
    // A bin with one of these bytes can give a document numbers of more than two decimals, which no
    // packed number decodes to.
    if (packed.find_first_of("\"\\") != std::string::npos) return 0;
    rapidjson::Document document;
    if (DecodeLeaf(packed, document) == "true") Require(RoundTrips(document));
    return 0;
}
