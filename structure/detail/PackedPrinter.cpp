#include "structure/detail/PackedPrinter.h"

#include <array>

namespace dataengine::detail {
namespace {

/// How a byte is written in a quoted string: 0 as itself, 'u' as \u00xx, otherwise after a
/// backslash.
constexpr std::array<char, 256> MakeEscapes() {
    std::array<char, 256> escapes{};
    for (std::size_t byte = 0; byte < 32; ++byte) escapes[byte] = 'u';
    escapes[127] = 'u';
    escapes['\b'] = 'b';
    escapes['\t'] = 't';
    escapes['\n'] = 'n';
    escapes['\f'] = 'f';
    escapes['\r'] = 'r';
    escapes['"'] = '"';
    escapes['/'] = '/';
    escapes['\\'] = '\\';
    return escapes;
}
constexpr std::array<char, 256> kEscapes = MakeEscapes();

char* WriteEscape(unsigned char byte, char* at) {
    static constexpr char kHexDigits[] = "0123456789abcdef";
    *at++ = '\\';
    *at++ = kEscapes[byte];
    if (kEscapes[byte] != 'u') return at;
    *at++ = '0';
    *at++ = '0';
    *at++ = kHexDigits[byte >> 4];
    *at++ = kHexDigits[byte & 15];
    return at;
}

}  // namespace

bool PackedPrinter::Str(const char* bytes, std::size_t size) {
    constexpr std::size_t kEscapeSize = 6;
    char* at = Reserve(size + 2);
    *at++ = '"';
    for (const char* const end = bytes + size; bytes != end; ++bytes) {
        const auto byte = static_cast<unsigned char>(*bytes);
        if (kEscapes[byte] == 0) {
            *at++ = *bytes;
            continue;
        }
        SetEnd(at);
        at = WriteEscape(byte, Reserve(kEscapeSize + static_cast<std::size_t>(end - bytes)));
    }
    *at++ = '"';
    SetEnd(at);
    return true;
}

}  // namespace dataengine::detail
