#pragma once

#include <rapidjson/document.h>

#include <string>
#include <string_view>

#include "structure/detail/PackedBytes.h"

/// Packed values as JSON text that loses nothing, and back:
///
///   nil, bool, integer, str, array   as in JSON; a str in UTF-8
///   float64                          a number with a fraction or an exponent
///   map                              an object, from the first key on that is not a str or begins
///                                    with '$': {"a":1,"$map":[[key,value],...]}
///   {"$float32":1.5}                 float32
///   {"$float64":"nan"}               nan, inf, -inf, or the bits of another NaN:
///   "7ff8000000000001"
///   {"$bin":"text"}                  bin in UTF-8
///   {"$binHex":"00ff"}               bin; {"$strHex":"00ff"} a str that is not UTF-8
///   {"$ext":[5,"00ff"]}              ext of type 5
///   {"$raw":"c1"}                    bytes that are not a packed value
namespace dataengine::tool {

/// The text of a packed value and what documents make of it.
struct Exact {
    std::string text;
    std::string nullReason;  // why the value becomes null in documents; empty if nothing was found
    bool hasOddBin = false;  // whether it has a bin that may not be JSON text
};

/// Returns the text of the next value of `bytes`, or its beginning of about `limit` bytes. Throws
/// as detail::PackedBytes does. Complexity: linear in the value; no recursion.
Exact ReadExact(detail::PackedBytes& bytes, std::size_t limit = std::string::npos);
inline std::string ExactText(detail::PackedBytes& bytes) {
    return ReadExact(bytes).text;
}

/// Returns `text` as a JSON string. A string that is not UTF-8 keeps its bytes.
std::string JsonString(std::string_view text);

/// Appends the packed form of a value of such text: narrowest integers and lengths. Throws
/// vxJson::Error for an object with a "$" key that the text does not have.
void PackExact(const rapidjson::Value& root, std::string& bytes);

}  // namespace dataengine::tool
