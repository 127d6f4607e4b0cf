#pragma once

#include <string>
#include <string_view>

namespace vxJson::detail {

std::string EncodeBase64(std::string_view bytes);

/// Decodes into `bytes` and returns true if `text` is what EncodeBase64 writes for them: padded, of
/// the standard alphabet, with no bit set that stands for nothing.
bool DecodeBase64(std::string_view text, std::string& bytes);

}  // namespace vxJson::detail
