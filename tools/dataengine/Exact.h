#pragma once

#include <rapidjson/document.h>

#include <string>

#include "structure/detail/PackedBytes.h"

/// Packed values as JSON text that loses nothing, and back:
///
///   nil, bool, integer, str, array   as in JSON
///   float64                          a number with a fraction or an exponent
///   map                              an object; a key that is not a str in UTF-8, or begins with
///                                    '$', is a '$' and the bytes of the key: {"$05":true}
///   {"$float32":1.5}                 float32: a number, "nan", "inf" or "-inf"
///   {"$float64":"nan"}               such a float64
///   {"$bin":"text"}                  bin in UTF-8
///   {"$ext":[5,"00ff"]}              ext of type 5
///   {"$raw":"a1ff"}                  the bytes of anything else
namespace dataengine::tool {

/// The text of a packed value.
struct Exact {
    std::string text;
    std::string nullReason;  // why the value becomes null in documents; empty if nothing was found
};

/// Takes a value and returns its text. Throws as detail::PackedBytes does. Complexity: linear in
/// the value; no recursion.
Exact ReadExact(detail::PackedBytes& bytes);

/// Returns the text of bytes that need not be packed values.
std::string RawText(std::string_view bytes);

/// Appends the packed form of the value of such text: narrowest integers and lengths. Throws
/// vxJson::Error for an object with a "$" key that the text does not have.
void PackExact(const rapidjson::Value& root, std::string& bytes);

}  // namespace dataengine::tool
