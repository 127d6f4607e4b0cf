#pragma once

#include <string>
#include <utility>

namespace dataengine::detail {

/// Moves the string out and leaves `source` empty, which a string's own move does not guarantee.
/// Assigning the result to `source` restores it.
inline std::string TakeText(std::string& source) noexcept {
    return std::exchange(source, {});
}

}  // namespace dataengine::detail
