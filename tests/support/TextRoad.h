#pragma once

#include <VxUtil/vxJson.h>
#include <rapidjson/document.h>

#include <cstddef>
#include <iosfwd>
#include <map>
#include <msgpack.hpp>
#include <string>
#include <vector>

#include "variables/DDKey.h"

/// What a print has met.
struct Printed {
    std::size_t depth = 0;
    bool isIntact = true;  // each `bin` is a JSON string between its two quotation marks
};

/// Prints `object` as the stream's own state wants its floats. Text is escaped, `bin` is not.
Printed PrintObject(std::ostream& output, const msgpack::object& object);

/// The road through text that defines every decoded document: unpack the object, print it, parse
/// the text. Slow and simple on purpose; the operations that the library has as well are told here
/// step by step, with its signatures, as the measure of what it gives.
///
/// A `bin` that is no whole JSON string between its two quotation marks makes its value null. The
/// text alone would let some through: `a","b` in an array would pass for two elements.
///
/// Thread rule: no state; calls with distinct outputs run side by side.
class TextRoad {
  public:
    using Allocator = rapidjson::MemoryPoolAllocator<rapidjson::CrtAllocator>;

    /// Unpacks the object at the start of `length` bytes and says in `taken` how many it took.
    ///
    /// msgpack allocates what an array declares before it looks for the elements. No object can
    /// hold more elements or bytes than there are bytes left, so that is the limit set for it; past
    /// the limit, the bytes are walked without keeping them, to raise what they would have raised.
    /// Throws msgpack::insufficient_bytes or msgpack::parse_error, whichever is met first.
    static msgpack::object_handle Unpack(const char* bytes, std::size_t length, std::size_t& taken);

    /// The value of `object` in `allocator`; null for whatever does not print as JSON.
    static rapidjson::Value ObjectToJson(const msgpack::object& object, Allocator& allocator);

    static bool GetBinaryDataInfo(const std::string& blob, std::string& name, vxJson::Value& schema,
                                  int& offset);

    static bool ParseBinaryDataToJson(const char* buf, int len, const vxJson::Value& schema,
                                      const vxJson::Value& offsets, const vxJson::Value& fields,
                                      rapidjson::Document& out);

    static const vxJson::Value* GetChildItemByName(const std::string& name,
                                                   const vxJson::Value& list);

    /// Takes documents of any shape: a value that is no object has no members, a "name" that is no
    /// string reads as the empty name, a "type" that is no 32-bit integer as 0, a "column" that is
    /// no array has no columns. A new name replaces a value of any kind.
    static bool PostDataProcessing(const std::map<DDKey, DDKey>& mapping,
                                   const std::string& parserPath, rapidjson::Document& document,
                                   std::vector<std::string>& items);
};
