#pragma once

#include <VxUtil/vxJson.h>

#include <cstddef>
#include <string>

#include "structure/detail/NameIndex.h"
#include "structure/detail/PackedFormat.h"
#include "structure/detail/ValueDecoder.h"

namespace dataengine::detail {

/// Decodes the selected items of a packed buffer, as its schema describes them. Used for one call
/// of ParseBinaryDataToJson; the arguments must outlive it.
class SelectionDecoder {
  public:
    /// `selected` is the number of calls of the functions below.
    SelectionDecoder(const char* bytes, int size, const vxJson::Value& schema,
                     const vxJson::Value& offsets, std::size_t selected, JsonPool& pool);

    /// Appends the item that one entry of a selection names to `out`, or nothing if the schema does
    /// not have it.
    void AddSelected(const vxJson::Value& entry, rapidjson::Value& out);

    /// Appends the item that the name of this schema item selects when all items are selected, or
    /// nothing if that name is not a string or selects nothing.
    void AddItem(const vxJson::Value& item, rapidjson::Value& out);

  private:
    void AddFound(const vxJson::Value& item, int type, const std::string& name,
                  const vxJson::Value& entry, rapidjson::Value& out);
    void AddLeaf(int type, const std::string& name, const vxJson::Value& offset,
                 rapidjson::Value& out);
    void AddTable(const vxJson::Value& item, const std::string& name, const vxJson::Value& offsets,
                  const vxJson::Value& column, const vxJson::Value& attributes,
                  rapidjson::Value& out);
    void DecodeChildren(const vxJson::Value& selection, const vxJson::Value& children,
                        const vxJson::Value& offsets, rapidjson::Value& list);
    void AddChild(const vxJson::Value* child, const std::string& name, const vxJson::Value& offsets,
                  rapidjson::Value& list);
    rapidjson::Value DecodeAt(int offset);

    const char* bytes_;
    int size_;
    NameIndex items_;
    const vxJson::Value& offsets_;
    JsonPool& pool_;
    const vxJson::Value null_;  // selects all columns and attributes of a table
};

}  // namespace dataengine::detail
