#pragma once

#include <string>

namespace vxutil {

inline constexpr char kHexDigits[] = "0123456789abcdef";

/// Appends the two lower-case digits of a byte.
inline void AppendHex(std::string& text, unsigned char byte) {
    text += kHexDigits[byte >> 4];
    text += kHexDigits[byte & 15];
}

/// Returns the value of a hexadecimal digit of either case, or -1 for any other character.
constexpr int HexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

}  // namespace vxutil
