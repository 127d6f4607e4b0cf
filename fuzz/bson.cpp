// BSON: bytes that can be decoded must come out of their own encoding unchanged.

#include "bson/Bson.h"

#include "fuzz/Fuzz.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vxJson::Value value;
    std::string bytes;
    try {
        value = Bson::Decode(reinterpret_cast<const char*>(data), size);
        // A type that is read as an object can be one level deeper than BSON allows.
        bytes = Bson::Encode(value);
    } catch (const vxJson::Error&) {
        return 0;
    }
    const vxJson::Value again = Bson::Decode(bytes.data(), bytes.size());
    Require(value == again, value.toString(false) + " comes back as " + again.toString(false));
    return 0;
}
