// Parses JSON text. A parsed value must be equal after printing and parsing it again. The first
// byte of the input selects plain or Extended JSON.

#include <VxUtil/vxJson.h>

#include <sstream>

#include "fuzz/Fuzz.h"

namespace {

bool Parse(const std::string& text, bool extended, vxJson::Value& value) {
    std::istringstream stream(text);
    return vxJson::Reader().parse(stream, value, extended);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const bool extended = data[0] % 2 == 1;
    vxJson::Value value;
    if (!Parse(InputText(data + 1, size - 1), extended, value)) {
        Require(value.isNull(), "text that does not parse leaves " + value.toString(false));
        return 0;
    }
    const std::string text = value.toString(false);
    for (const std::string& written : {text, value.toStyledString()}) {
        vxJson::Value again;
        Require(Parse(written, extended, again), "does not parse again: " + written);
        // NaN and the infinities, which only Extended JSON has, print as null.
        Require((extended || value == again) && again.toString(false) == text,
                text + " comes back as " + again.toString(false));
    }
    return 0;
}
