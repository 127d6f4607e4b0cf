#pragma once

#include <VxUtil/vxJson.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "structure/PackedFrameReader.h"
#include "structure/detail/PackedBytes.h"

namespace dataengine::tool {

/// Opens a frame. Throws Failure with the byte and the reason if `bytes` are not one.
void OpenFrame(PackedFrameReader& reader, const std::string& path, std::string_view bytes);

/// An element of a schema: a leaf, a table, or a column or attribute of a table.
struct Item {
    const vxJson::Value* schema;
    const Item* table;  // of a column or an attribute, otherwise null
    std::string role;
    std::optional<std::size_t> offset = std::nullopt;  // of its value in the payload

    bool HasValue() const;
    std::string Name() const { return (*schema)["name"].asString(); }
    std::string Path() const { return (table == nullptr ? "" : table->Name() + '.') + Name(); }
};

/// Returns the elements of a frame's schema in its order, each table followed by its children. The
/// item that the writer gives a frame without items is left out.
std::vector<Item> ItemsOf(const PackedFrameReader& reader);

/// Reads an array of offsets from a file.
vxJson::Value ReadOffsets(const std::string& path);

/// Sets the offset of each item that has one in `offsets`.
void SetOffsets(std::vector<Item>& items, const vxJson::Value& offsets);

/// Returns the error for bytes after the last value of a frame of `size` bytes, which need not be
/// consecutive then.
std::string DescribeRest(std::size_t size, const detail::PackedBytes& rest);

/// The frame in a file, and the offsets of its values. Not copied, as items refer to each other.
class Frame {
  public:
    /// Takes offsets from a file if its path is not empty. Otherwise values are consecutive, up to
    /// one that cannot be read. Throws Failure if the file has no frame.
    Frame(const std::string& file, const std::string& offsets);
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;

    /// Returns the packed bytes of the value of an item that has an offset. Throws as PackedBytes
    /// does, and Failure if items share values too often.
    std::string_view Value(const Item& item);

    const std::string path;
    const std::string bytes;
    PackedFrameReader reader;
    std::vector<Item> items;
    std::string error;  // that ended the search for offsets, or nothing

  private:
    void FindOffsets();

    std::size_t budget_ = 0;  // bytes of values that may still be read
};

/// Returns the selection of `words`: names of items, of columns and attributes of a table
/// ("ifTable.ifName"), or lists of them separated by commas; or the path of a JSON selection, if it
/// is the only word. Appends an error to `errors` for each name that the frame does not have.
vxJson::Value SelectionOf(const std::vector<std::string>& words, const PackedFrameReader& reader,
                          std::vector<std::string>& errors);

}  // namespace dataengine::tool
