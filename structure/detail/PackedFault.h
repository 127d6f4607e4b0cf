#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace dataengine::detail {

/// Describes why the packed value at `offset` of a frame cannot be read, which must be so:
/// "byte 1234: the string ends beyond the frame". The byte is that of the faulty element.
/// Complexity: linear in the bytes up to the fault.
std::string DescribeFault(std::string_view frame, std::size_t offset);

}  // namespace dataengine::detail
