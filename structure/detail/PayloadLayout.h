#pragma once

#include <VxUtil/vxJson.h>

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

#include "structure/detail/PackedBytes.h"

namespace dataengine::detail {

/// The order in which a writer stores the values of a schema: ascending by the indexes of the
/// items, and within a table by the indexes of its columns and attributes. Items of one index share
/// a value.
class PayloadLayout {
  public:
    /// Throws what the conversions in the schema throw, and Error if an index is negative or a leaf
    /// and a table have the same one.
    explicit PayloadLayout(const vxJson::Value& schema);

    /// Returns the offsets of the values in the payload of `frame`, which begins at `payload`.
    ///
    /// Throws msgpack::insufficient_bytes or msgpack::parse_error with a text that names item and
    /// byte, and Error if an index exceeds the size of the frame or an offset 2^31-1.
    vxJson::Value FindOffsets(std::string_view frame, std::size_t payload) const;

  private:
    struct Entry {
        std::string name;  // of the first item with this index
        bool isTable;
        std::map<int, std::string> children;  // the same of a table, by index
    };

    void AddChildren(const std::string& table, const vxJson::Value& list, Entry& entry);

    std::map<int, Entry> entries_;  // by index
};

}  // namespace dataengine::detail
