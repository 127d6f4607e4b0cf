#include "structure/detail/DocumentBuilder.h"

#include <algorithm>
#include <new>

#include "structure/detail/MsgpackErrors.h"
#include "structure/detail/ValueDecoder.h"

namespace dataengine::detail {
namespace {

using rapidjson::SizeType;
using rapidjson::Value;

// The members of an item are names and values in turn. These are the positions of the values.
constexpr int kType = 1, kName = 3, kValue = 5;
constexpr int kColumn = 5, kHashSort = 7, kHashColumns = 9, kAttributes = 11;

/// Adds a member without its value. `key` is referred to, not copied.
void AddKey(Value* cells, int member, Value::StringRefType key) {
    new (cells + member - 1) Value(key);
    new (cells + member) Value();
}

/// Makes `value` a string up to the first zero byte of `text`.
void SetText(Value& value, std::string_view text, JsonPool& pool) {
    const std::string_view shown = UpToZero(text);
    RawValues::MakeString(value, shown.data(), static_cast<SizeType>(shown.size()), pool);
}

}  // namespace

ItemCells::ItemCells(const ItemHead& head) {
    AddKey(cells_.data(), kType, "type");
    cells_[kType].SetInt(head.type);
    AddKey(cells_.data(), kName, "name");
    fitsCell_ = RawValues::MakeStringInCell(cells_[kName], UpToZero(head.name));
}

void ItemCells::CopyName(Value* cells, std::string_view name, JsonPool& pool) {
    SetText(cells[kName], name, pool);
}

void DocumentBuilder::BeginTable(const ItemHead& head, const ItemCells& item) {
    table_ = &head;
    item_ = nullptr;
    tableOffsets_ = &offsets_[head.index];
    cells_ = RawValues::MakeObject(RawValues::NextElement(document_), 6, pool_);
    item.CopyTo(cells_, head.name, pool_);
    AddKey(cells_, kColumn, "column");
    AddKey(cells_, kHashSort, "hashSort");
    AddKey(cells_, kHashColumns, "hashColumns");
    AddKey(cells_, kAttributes, "attributes");
}

void DocumentBuilder::Columns(std::size_t most) {
    BeginChildren(kColumn, most);
}

void DocumentBuilder::Attributes(std::size_t most) {
    BeginChildren(kAttributes, most);
}

void DocumentBuilder::Child(const ItemHead& head, const ItemCells& item) {
    if (head.type != kTableType) return AddLeaf(head, item, *tableOffsets_, *children_);
    Value& child = RawValues::NextElement(*children_);
    item.CopyTo(RawValues::MakeObject(child, 2, pool_), head.name, pool_);
    RawValues::AddElement(*children_);
}

void DocumentBuilder::HashSort(bool value) {
    cells_[kHashSort].SetBool(value);
}

void DocumentBuilder::HashColumns(const std::string& text) {
    SetText(cells_[kHashColumns], text, pool_);
}

void DocumentBuilder::EndTable() {
    RawValues::AddElement(document_);
    table_ = nullptr;
}

std::string DocumentBuilder::Path() const {
    std::string path;
    if (table_ != nullptr) path = table_->name;
    if (table_ != nullptr && item_ != nullptr) path += '.';
    if (item_ != nullptr) path += item_->name;
    return path;
}

void DocumentBuilder::Reserve(Value& array, std::size_t most) {
    RawValues::Reserve(array, static_cast<SizeType>(most), pool_);
}

void DocumentBuilder::BeginChildren(int member, std::size_t most) {
    children_ = &cells_[member];
    Reserve(*children_, most);
}

void DocumentBuilder::AddLeaf(const ItemHead& head, const ItemCells& item,
                              const vxJson::Value& offsets, Value& list) {
    item_ = &head;
    Value* const cells = RawValues::MakeObject(RawValues::NextElement(list), 3, pool_);
    item.CopyTo(cells, head.name, pool_);
    AddKey(cells, kValue, "value");
    ReadAt(offsets[head.index].asInt(),
           [&](PackedBytes& bytes, JsonPool& pool) { DecodeValue(bytes, cells[kValue], pool); });
    RawValues::AddElement(list);
}

/// Returns the bytes at `offset` that may be read.
PackedBytes DocumentBuilder::Begin(int offset) {
    offset_ = offset;
    if (!Contains(offset)) throw msgpack::insufficient_bytes("insufficient bytes");
    return PackedBytes(bytes_ + offset, std::min<std::uint64_t>(BytesAt(offset), left_));
}

}  // namespace dataengine::detail
