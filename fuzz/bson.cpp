// Decodes BSON. A decoded value must be equal after encoding and decoding it again.

#include "bson/Bson.h"

#include "fuzz/Fuzz.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vxJson::Value value;
    std::string bytes;
    try {
        value = dataengine::bson::Decode(reinterpret_cast<const char*>(data), size);
        // A type that decodes to an object can exceed the depth limit by one level.
        bytes = dataengine::bson::Encode(value);
    } catch (const vxJson::Error&) {
        return 0;
    }
    const vxJson::Value again = dataengine::bson::Decode(bytes.data(), bytes.size());
    Require(value == again, value.toString(false) + " comes back as " + again.toString(false));
    return 0;
}
