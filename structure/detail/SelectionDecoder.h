#pragma once

#include <VxUtil/vxJson.h>

#include <string>

#include "structure/detail/NameIndex.h"
#include "structure/detail/ValueDecoder.h"

namespace dataengine {

/// The "type" of an item that is a table; every other number marks a leaf.
constexpr int kTableType = 11;

/// One decoding of selected items out of a packed buffer, driven by its schema. All arguments are
/// the caller's and must outlive it.
class SelectionDecoder {
  public:
    SelectionDecoder(const char* bytes, int size, const vxJson::Value& schema,
                     const vxJson::Value& offsets, JsonPool& pool);

    /// Decodes what one entry of a selection names and pushes it to `out`; an unknown name is
    /// passed over.
    void AddSelected(const vxJson::Value& entry, rapidjson::Value& out);

    /// Does the same for the entry that a selection of everything has for an item: none if its name
    /// is no string.
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
    void AddChild(NameIndex& children, const std::string& name, const vxJson::Value* bearer,
                  const vxJson::Value& offsets, rapidjson::Value& list);
    rapidjson::Value DecodeAt(int offset);

    const char* bytes_;
    int size_;
    NameIndex items_;
    const vxJson::Value& offsets_;
    JsonPool& pool_;
    const vxJson::Value everything_;  // the null value: selects all
};

}  // namespace dataengine
