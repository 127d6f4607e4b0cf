#include "structure/SchemaPrinter.h"

namespace dataengine {
namespace {

/// The escape of a byte, or nothing for a byte that stands for itself.
const char* ShortEscape(char byte) {
    switch (byte) {
        case '\b':
            return "\\b";
        case '\t':
            return "\\t";
        case '\n':
            return "\\n";
        case '\f':
            return "\\f";
        case '\r':
            return "\\r";
        case '"':
            return "\\\"";
        case '/':
            return "\\/";
        case '\\':
            return "\\\\";
        default:
            return nullptr;
    }
}

bool IsControl(char byte) {
    return static_cast<unsigned char>(byte) < 32 || byte == 127;
}

}  // namespace

bool SchemaPrinter::visit_str(const char* bytes, std::uint32_t size) {
    static constexpr char kHexDigits[] = "0123456789abcdef";
    text_ += '"';
    for (std::uint32_t i = 0; i < size; ++i) {
        const char byte = bytes[i];
        if (const char* escape = ShortEscape(byte)) {
            text_ += escape;
        } else if (IsControl(byte)) {
            text_ += "\\u00";
            text_ += kHexDigits[byte >> 4];
            text_ += kHexDigits[byte & 15];
        } else {
            text_ += byte;
        }
    }
    return Put("\"");
}

}  // namespace dataengine
