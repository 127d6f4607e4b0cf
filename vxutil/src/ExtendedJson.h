#pragma once

#include <string_view>

#include "FlatObject.h"

namespace vxJson::detail {

/// Returns whether `key` opens one of the objects in which Extended JSON writes a value.
bool IsFormKey(std::string_view key) noexcept;

/// Reads an object whose members, in the order of their keys, are those from `first` to `last`. If
/// they are exactly the members of an Extended JSON form, and well formed, stores its value in
/// `value` and returns true. Otherwise returns false.
bool ReadForm(const ParsedMember* first, const ParsedMember* last, Value& value);

/// Converts a JSON number to the nearest double. Returns false if the number is too large, or if
/// `text` has anything else after it.
bool ReadDouble(std::string_view text, double& number);

}  // namespace vxJson::detail
