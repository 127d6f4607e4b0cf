#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vxJson::detail {

/// Returns the length of the Base64 text of `count` bytes.
constexpr std::size_t Base64Length(std::size_t count) {
    return (count + 2) / 3 * 4;
}

/// Writes the padded Base64 text of `bytes` to the Base64Length(bytes.size()) characters at `out`.
void EncodeBase64(std::string_view bytes, char* out) noexcept;

/// Decodes `text` into `bytes`. Returns whether `text` is exactly the text that EncodeBase64
/// writes: padded, in the standard alphabet, without stray bits in the last digit. Otherwise
/// `bytes` is unspecified.
bool DecodeBase64(std::string_view text, std::string& bytes);

}  // namespace vxJson::detail
