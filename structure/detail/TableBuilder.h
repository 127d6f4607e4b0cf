#pragma once

#include <cstddef>
#include <cstdint>

#include "structure/PackedTable.h"
#include "structure/detail/DocumentBuilder.h"

namespace dataengine::detail {

/// Builds the arrays of one table instead of its document. A handler of SelectionWalk.
///
/// After an exception the table holds the columns before the one that failed.
class TableBuilder : public DocumentBuilder {
  public:
    /// As DocumentBuilder.
    TableBuilder(const char* bytes, std::size_t size, const vxJson::Value& offsets,
                 PackedTable& table, std::uint64_t limit)
        : DocumentBuilder(bytes, size, offsets, table.document, limit), table_(table) {}

    void BeginTable(const ItemHead& head, const ItemCells& item);
    void Columns(std::size_t most);
    void Attributes(std::size_t most);
    void Child(const ItemHead& head, const ItemCells& item);
    void EndTable();

  private:
    PackedTable& table_;
    bool inColumns_ = false;
};

}  // namespace dataengine::detail
