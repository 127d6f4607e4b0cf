#pragma once

#include <string_view>

#include "structure/PackedFrame.h"

namespace dataengine::detail {

/// The version of the packed format, the first object of every frame.
constexpr int kFormatVersion = 1;

/// Returns whether the name of an item begins with '$', which selections strip.
constexpr bool HasMark(std::string_view name) {
    return !name.empty() && name.front() == '$';
}

/// Returns a name of a selection without its leading '$', if it has one. Only one is removed.
constexpr std::string_view WithoutMark(std::string_view name) {
    return HasMark(name) ? name.substr(1) : name;
}

/// Returns a string up to its first zero byte, where documents end it.
constexpr std::string_view UpToZero(std::string_view text) {
    return text.substr(0, text.find('\0'));
}

}  // namespace dataengine::detail
