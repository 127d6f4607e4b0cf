#pragma once

#include <string_view>

#include <VxUtil/vxJson.h>

namespace vxJson::detail {

/// Returns whether `key` is the first key of a form of Extended JSON.
bool IsFormKey(std::string_view key) noexcept;

/// Replaces an object by the value of the form of Extended JSON that it is. Other objects, which do
/// not have exactly the well-formed members of one form, are unchanged.
void ReadForm(Value& object);

/// Converts a JSON number to the nearest double. Returns false if the number is too large, or if
/// anything follows it in `text`.
bool ReadDouble(std::string_view text, double& number);

}  // namespace vxJson::detail
