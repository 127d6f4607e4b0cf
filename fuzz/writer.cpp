// Decodes one packed value, writes it into a frame and decodes it again.

#include "fuzz/Fuzz.h"
#include "tests/structure/Decode.h"
#include "tests/support/RoundTrip.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string packed = InputText(data, size);
    // A bin with one of these bytes can add numbers with more than two decimals to the document. No
    // packed number decodes to such a number.
    if (packed.find_first_of("\"\\") != std::string::npos) return 0;
    rapidjson::Document document;
    if (DecodeLeaf(packed, document) == "true") Require(RoundTrips(document));
    return 0;
}
