#include "structure/detail/DocumentBuilder.h"

#include <algorithm>
#include <msgpack.hpp>
#include <new>

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

void DocumentBuilder::BeginTable(const ItemHead& head) {
    tableName_ = head.name;
    name_ = {};
    tableOffsets_ = &offsets_[head.index];
    cells_ = MakeItem(table_, 6, head);
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

void DocumentBuilder::Child(const ItemHead& head) {
    if (head.type != kTableType) return AddLeaf(head, *tableOffsets_, *children_);
    Value child;
    MakeItem(child, 2, head);
    children_->PushBack(child, pool_);
}

void DocumentBuilder::HashSort(bool value) {
    cells_[kHashSort].SetBool(value);
}

void DocumentBuilder::HashColumns(const std::string& text) {
    SetText(cells_[kHashColumns], text, pool_);
}

void DocumentBuilder::EndTable() {
    document_.PushBack(table_, pool_);
    tableName_ = {};
}

std::string DocumentBuilder::Path() const {
    std::string path(tableName_);
    if (!tableName_.empty() && !name_.empty()) path += '.';
    return path.append(name_);
}

void DocumentBuilder::Reserve(Value& array, std::size_t most) {
    RawValues::Reserve(array, static_cast<SizeType>(most), pool_);
}

void DocumentBuilder::BeginChildren(int member, std::size_t most) {
    children_ = &cells_[member];
    Reserve(*children_, most);
}

/// Makes `item` an object with storage for `members`, the first of which are its type and name.
Value* DocumentBuilder::MakeItem(Value& item, SizeType members, const ItemHead& head) {
    Value* const cells = RawValues::MakeObject(item, members, pool_);
    AddKey(cells, kType, "type");
    cells[kType].SetInt(head.type);
    AddKey(cells, kName, "name");
    SetText(cells[kName], head.name, pool_);
    return cells;
}

void DocumentBuilder::AddLeaf(const ItemHead& head, const vxJson::Value& offsets, Value& list) {
    name_ = head.name;
    Value leaf;
    Value* const cells = MakeItem(leaf, 3, head);
    AddKey(cells, kValue, "value");
    Decode(offsets[head.index].asInt(), cells[kValue]);
    list.PushBack(leaf, pool_);
}

void DocumentBuilder::Decode(int offset, Value& value) {
    offset_ = offset;
    if (!Contains(offset)) throw msgpack::insufficient_bytes("insufficient bytes");
    const std::size_t size = std::min<std::uint64_t>(BytesAt(offset), left_);
    PackedBytes bytes(bytes_ + offset, size);
    DecodeValue(bytes, value, pool_);
    left_ -= size - bytes.Remaining();
}

}  // namespace dataengine::detail
