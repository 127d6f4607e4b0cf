#pragma once

#include <bson/bson.h>

#include <string_view>

namespace Bson {

/// Returns whether `text` is UTF-8. libbson takes the two bytes C0 80 for a zero byte, which UTF-8
/// doesn't.
inline bool IsUtf8(std::string_view text) {
    constexpr bool kAllowZeroBytes = true;
    return bson_utf8_validate(text.data(), text.size(), kAllowZeroBytes) &&
           text.find("\xc0\x80") == std::string_view::npos;
}

}  // namespace Bson
