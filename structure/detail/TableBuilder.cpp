#include "structure/detail/TableBuilder.h"

#include "structure/detail/ColumnDecoder.h"
#include "structure/detail/PackedFormat.h"

namespace dataengine::detail {

void TableBuilder::BeginTable(const ItemHead& head, const ItemCells& item) {
    table_.name = UpToZero(head.name);
    table_.columns.clear();
    DocumentBuilder::BeginTable(head, item);
}

void TableBuilder::Columns(std::size_t most) {
    inColumns_ = true;
    DocumentBuilder::Columns(0);
    table_.columns.reserve(most);
}

void TableBuilder::Attributes(std::size_t most) {
    inColumns_ = false;
    DocumentBuilder::Attributes(most);
}

void TableBuilder::Child(const ItemHead& head, const ItemCells& item) {
    if (!inColumns_) return DocumentBuilder::Child(head, item);
    if (head.type == kTableType) return;  // tables do not nest
    PackedColumn& column = table_.columns.emplace_back();
    column.name = UpToZero(head.name);
    column.type = head.type;
    ReadChild(head, [&](PackedBytes& bytes, JsonPool& pool) { DecodeColumn(bytes, pool, column); });
}

void TableBuilder::EndTable() {
    DocumentBuilder::EndTable();
    rapidjson::Value attributes;
    attributes = table_.document[0].FindMember("attributes")->value;
    static_cast<rapidjson::Value&>(table_.document) = attributes;
}

}  // namespace dataengine::detail
