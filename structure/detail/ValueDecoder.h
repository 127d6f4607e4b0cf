#pragma once

#include <cstddef>

#include "documents/RawValues.h"

namespace dataengine {

/// Decodes the packed value at the start of `size` bytes into a rapidjson value in `pool`.
///
/// The result is what printing the value with two decimals and parsing that text gives: integers
/// exact, floats with two decimals, a str byte for byte. A value that the text cannot express is
/// null as a whole: one that holds an ext, a NaN or an infinity, or a map key that is not a string.
///
///   no bin with '"', '\' or a control byte   bytes -> PackedWalk -> values in the pool
///   otherwise                                bytes -> PackedPrinter -> text -> ParseJson
///
/// Memory is bounded by the bytes that are there, depth by memory only.
///
/// Throws msgpack::insufficient_bytes if the bytes end within the value, msgpack::parse_error at a
/// byte that starts no value, std::bad_alloc if the pool cannot grow.
rapidjson::Value DecodeValue(const char* bytes, std::size_t size, JsonPool& pool);

}  // namespace dataengine
