#pragma once

#include <VxUtil/vxJson.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "structure/PackedFrameReader.h"

namespace dataengine::tool {

/// Opens a frame. Throws Failure with the byte and the reason if `bytes` are not one.
void OpenFrame(PackedFrameReader& reader, const std::string& path, std::string_view bytes);

/// An element of a schema: a leaf, a table, or a column or attribute of a table.
struct Item {
    const vxJson::Value* schema;
    const vxJson::Value* table;  // of a column or an attribute, otherwise null
    const char* role;
    std::optional<std::size_t> offset = std::nullopt;  // of its value in the payload

    bool HasValue() const;
    std::string Path() const;  // such as "hostname", or "ifTable.ifName"
};

/// Returns the elements of a frame's schema in its order, each table followed by its children. The
/// item that the writer gives a frame without items is left out.
std::vector<Item> ItemsOf(const PackedFrameReader& reader);

/// Reads an array of offsets from a file.
vxJson::Value ReadOffsets(const std::string& path);

/// Sets the offset of each item that has one in `offsets`.
void SetOffsets(std::vector<Item>& items, const vxJson::Value& offsets);

/// Finds the offsets of consecutive values. Returns the error that ended the search, or nothing.
std::string FindOffsets(std::vector<Item>& items, const PackedFrameReader& reader);

/// Returns the selection of `words`: names of items, of columns and attributes of a table
/// ("ifTable.ifName"), or lists of them separated by commas; or the path of a JSON selection, if it
/// is the only word. Everything if there are no words. Appends an error to `errors` for each name
/// that the frame does not have.
vxJson::Value SelectionOf(const std::vector<std::string>& words, const vxJson::Value& schema,
                          std::vector<std::string>& errors);

}  // namespace dataengine::tool
