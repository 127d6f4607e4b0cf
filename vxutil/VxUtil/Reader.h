#pragma once

#include <VxUtil/vxJson.h>

#include <iosfwd>
#include <string_view>

namespace vxJson {

/// Returns the value of `text`, which must be one JSON text and nothing else but white space.
///
/// Integers from -2^63 to 2^64-1 stay integers; every other number becomes the nearest double. A
/// number too large for a double is an error, as is a zero with such an exponent (0e999). Of
/// members with equal keys the last one wins. Bytes from 0x80 on are kept unchanged.
///
/// With `extended`, the Extended JSON that toString and the clients of a store write is converted
/// to values: $binary, $uuid, $date, $numberInt, $numberLong, $numberDouble and $oid. This applies
/// to well-formed objects with exactly the members documented in docs/json-forms.md; anything else
/// stays a plain object.
///
/// Throws Error with the offset of the first invalid byte if the text is not JSON, or has a string
/// of 4 GiB or more.
///
/// Complexity: linear, with n log n for unsorted keys; needs memory for both a copy of the text and
/// the value.
VXUTIL_EXPORT Value Parse(std::string_view text, bool extended = true);

/// Reads JSON text from streams. Keeps no state.
///
/// Thread safety: may be used concurrently, with distinct streams and values.
class VXUTIL_EXPORT Reader {
  public:
    Reader() = default;
    ~Reader() = default;

    /// Reads the rest of `input`, which must be one JSON text and nothing else but white space,
    /// into `root`, as Parse does.
    ///
    /// Returns false and leaves `root` null if the text is not JSON, if it has a string of 4 GiB or
    /// more, or if the stream fails.
    ///
    /// Complexity: as of Parse.
    bool parse(std::istream& input, Value& root, bool extended);
};

}  // namespace vxJson
