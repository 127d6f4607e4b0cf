#pragma once

#include <string_view>

#include "FlatObject.h"

namespace vxJson::detail {

/// Returns whether `key` is the first key of a form of Extended JSON.
bool IsFormKey(std::string_view key) noexcept;

/// Reads the members of an object, sorted by their keys, as a form of Extended JSON. Stores the
/// value of the form in `value`. Returns false unless they are exactly the well-formed members of
/// one form.
bool ReadForm(const ParsedMember* first, const ParsedMember* last, Value& value);

/// Converts a JSON number to the nearest double. Returns false if the number is too large, or if
/// anything follows it in `text`.
bool ReadDouble(std::string_view text, double& number);

}  // namespace vxJson::detail
