// Reads the header of a packed buffer. The schema must equal the one read through text, the route
// that a float in the schema forces.

#include "fuzz/Fuzz.h"
#include "tests/support/BothDecoders.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string packed = InputText(data, size);
    ReadHeader(packed);
    const Header built = ReadHeader("\x01\xa0" + packed);
    if (built.ending != "true" || built.schema.isNull()) return 0;
    const std::string schema = packed.substr(0, static_cast<std::size_t>(built.offset) - 2);
    const std::string half = {'\xca', '\x3f', 0, 0, 0};
    const Header text = ReadHeader("\x01\xa0\x92" + schema + half);
    Require(built.schema == std::as_const(text.schema)[0], built.schema.toString(false));
    return 0;
}
