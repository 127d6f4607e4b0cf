#pragma once

#include <VxUtil/vxJson.h>

#include <string_view>

namespace vxJson::detail {

/// A member of an object that is being read; the key is part of the text.
struct ParsedMember {
    std::string_view key;
    Value value;
};

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
