#pragma once

#include <bson/bson.h>

#include <string_view>

namespace dataengine::bson {

/// Returns whether `text` is UTF-8.
inline bool IsUtf8(std::string_view text) {
    // libbson examines each byte separately. This loop, which the compiler vectorises, accepts most
    // strings and makes the encoding of a small record 1.1 times as fast.
    unsigned char bits = 0;
    for (const char byte : text) bits |= static_cast<unsigned char>(byte);
    if (bits < 0x80) return true;
    constexpr bool kAllowZeroBytes = true;
    // When it allows zero bytes, libbson also accepts their encoding as C0 80, which is not UTF-8.
    return bson_utf8_validate(text.data(), text.size(), kAllowZeroBytes) &&
           text.find("\xc0\x80") == std::string_view::npos;
}

}  // namespace dataengine::bson
