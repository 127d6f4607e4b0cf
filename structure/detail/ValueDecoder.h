#pragma once

#include "contracts/detail/rapidjson/RawValues.h"
#include "structure/detail/PackedBytes.h"

namespace dataengine::detail {

/// Decodes the next packed value into the null `value`, with its content in `pool`. The bytes then
/// begin after it.
///
/// The result equals printing the value with two decimals and parsing that text: integers are
/// exact, floats have two decimals, a str keeps every byte. A value that JSON text cannot express
/// is null as a whole: one that holds an ext, a NaN, an infinity or a map key that is not a string.
///
///   no bin with '"', '\' or a control byte   bytes -> PackedWalk -> values in the pool
///   otherwise                                bytes -> PackedPrinter -> text -> ParseJson
///
/// Memory use is bounded by the size of the packed value, depth by memory only.
///
/// Throws msgpack::insufficient_bytes if the bytes end within the value, msgpack::parse_error at a
/// byte that does not start a value, std::bad_alloc if the pool cannot grow. `value` is then
/// unspecified.
void DecodeValue(PackedBytes& bytes, rapidjson::Value& value, JsonPool& pool);

}  // namespace dataengine::detail
