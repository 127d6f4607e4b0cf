#pragma once

#include <VxUtil/vxJson.h>
#include <rapidjson/document.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tools/dataengine/Failure.h"

namespace tool {

/// The "type" of an item that is a table; every other number marks a leaf.
constexpr int kTableType = 11;

/// A packed frame read from a file: a header of version, name and schema, and the payload.
struct Frame {
    std::string path;
    std::string bytes;
    std::string name;
    vxJson::Value schema;  // an array
    int headerLength = 0;

    std::string_view Payload() const {
        return std::string_view(bytes).substr(static_cast<std::size_t>(headerLength));
    }
};

/// Reads a frame and its header. Throws Failure with the byte at which the header is broken.
Frame ReadFrame(const std::string& path);

/// An item of a schema, or a column or an attribute of a table in it.
struct Item {
    const vxJson::Value* schema;  // in the frame's schema
    std::string path;             // such as "hostname", or "ifTable.ifName"

    bool IsTable() const;
};

/// Returns the elements of `list` whose name is a string; none if `list` is not an array.
std::vector<Item> ItemsOf(const vxJson::Value& list, const std::string& prefix = "");

/// Where the values of a frame begin, counted from the end of the header.
struct Offsets {
    std::map<const vxJson::Value*, int> byItem;
    bool given = false;  // by the user, in a file
};

/// Reads the offsets from the file `path`. If `path` is empty, finds them: values are consecutive
/// and in schema order, those of a table in the order of their index. Reports an error if they are
/// not.
Offsets LocateValues(const Frame& frame, const std::string& path, ErrorReporter& errors);

/// Returns the number of bytes of an item's value. Throws Failure if it is broken.
std::size_t SizeOfValue(const Frame& frame, const Item& item, int offset);

/// Decodes an item's value and appends {"type", "name", "value"} to `list`, or {"type", "name"} for
/// a table in a table. Throws Failure if the value is broken.
void DecodeValue(const Frame& frame, const Item& item, int offset, rapidjson::Value& list,
                 rapidjson::Document::AllocatorType& pool);

/// Returns a decoded value as compact JSON text.
std::string JsonText(const rapidjson::Value& value);

}  // namespace tool
