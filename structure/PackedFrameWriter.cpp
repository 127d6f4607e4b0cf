#include "structure/PackedFrameWriter.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <sstream>
#include <string_view>
#include <unordered_set>

#include "contracts/detail/JsonValues.h"
#include "documents/FindMember.h"
#include "structure/detail/PackedFormat.h"
#include "structure/detail/ValuePacker.h"

// A frame is a header of three msgpack objects and, after it, the values of the items in the order
// in which they were added:
//
//   1          the version
//   str        the unit's name
//   array      the schema: a map for each item
//     leaf     {"name": str, "type": integer, "index": integer}
//     table    {"name": str, "type": 11, "index": integer, "hashSort": boolean, "hashColumns": any,
//               "column": [child...], "attributes": [child...]}
//     child    {"name": str, "type": integer, "index": integer}
//
// The index of an item is its position among the items, the index of a child its position among the
// columns and attributes of its table. The offsets, which are not part of the frame, hold at these
// positions where each value starts, counted from the end of the header.

namespace dataengine {
namespace {

using detail::Error;
using detail::FindMember;
using detail::kFormatVersion;
using detail::ValuePacker;

/// Runs `step` and prefixes the message of an error with `label()`.
template <typename Label, typename Step>
void Labelled(const Label& label, const Step& step) {
    try {
        step();
    } catch (const Error& error) {
        throw Error(label() + ": " + error.what());
    }
}

void RequireLeafType(int type) {
    if (type == kTableType) throw Error("type 11 marks a table");
}

void RequireSize(std::size_t size) {
    constexpr std::size_t kMaxSize = std::numeric_limits<int>::max();
    if (size > kMaxSize) throw Error("a frame holds up to 2147483647 bytes");
}

/// A member of a decoded item, and the test for its kind, which is null if any kind is allowed.
struct Member {
    const char* key;
    bool (rapidjson::Value::*isOfKind)() const;
};
constexpr Member kType = {"type", &rapidjson::Value::IsInt};
constexpr Member kName = {"name", &rapidjson::Value::IsString};
constexpr Member kLeaf[] = {kType, kName, {"value", nullptr}};
constexpr Member kTableChild[] = {kType, kName};
constexpr Member kTable[] = {kType,
                             kName,
                             {"column", &rapidjson::Value::IsArray},
                             {"hashSort", &rapidjson::Value::IsBool},
                             {"hashColumns", &rapidjson::Value::IsString},
                             {"attributes", &rapidjson::Value::IsArray}};

template <std::size_t count>
void RequireMembers(const rapidjson::Value& item, const Member (&members)[count]) {
    if (!item.IsObject()) throw Error("is not an object");
    for (const auto& [key, isOfKind] : members) {
        const auto member = item.FindMember(key);
        if (member == item.MemberEnd() || (isOfKind != nullptr && !(member->value.*isOfKind)()))
            throw Error(std::string("\"") + key + "\" is missing or of another kind");
    }
    if (item.MemberCount() != count) throw Error("has members that no decoded item has");
}

bool IsTable(const rapidjson::Value& item) {
    const rapidjson::Value* type = FindMember(item, "type");
    return type != nullptr && type->IsInt() && type->GetInt() == kTableType;
}

std::string StringOf(const rapidjson::Value& value) {
    return std::string(value.GetString(), value.GetStringLength());
}

/// Runs `step` for each element of a list and prefixes errors with its position and name.
template <typename Step>
void ForEach(const char* part, const rapidjson::Value& list, const Step& step) {
    for (rapidjson::SizeType i = 0; i < list.Size(); ++i) {
        const auto label = [&] {
            const rapidjson::Value* name = FindMember(list[i], "name");
            const std::string position = part + (' ' + std::to_string(i));
            return name == nullptr || !name->IsString() ? position
                                                        : position + " \"" + StringOf(*name) + '"';
        };
        Labelled(label, [&] { step(list[i]); });
    }
}

/// Chooses the names by which the elements of one list are found: the first element of each name
/// keeps it, the others get a zero byte and their index appended, which documents cut off again.
class ListedNames {
  public:
    std::string Next(const std::string& name, std::size_t index, bool mayKeep = true) {
        std::string listed = name.substr(0, name.find('\0'));
        if (!mayKeep || !taken_.insert(listed).second)
            listed.append(1, '\0').append(std::to_string(index));
        return listed;
    }

  private:
    std::unordered_set<std::string> taken_;
};

template <typename List, typename Text>
std::string JsonArray(const List& list, const Text& textOf) {
    std::string text;
    for (const auto& element : list) text.append(text.empty() ? "[" : ",").append(textOf(element));
    return text.empty() ? "[]" : text + ']';
}

bool StartsWithMark(const std::string& name) {
    return !name.empty() && name.front() == '$';
}

/// Returns the bytes that `pack` appends.
template <typename Pack>
std::string PackedWith(const Pack& pack) {
    std::string bytes;
    {
        ValuePacker packer(bytes);
        pack(packer);
    }
    return bytes;
}

/// Starts the map of an item with the members of all items; the caller packs `more` members.
void PackItemStart(ValuePacker& packer, const std::string& name, int type, std::size_t index,
                   std::size_t more = 0) {
    packer.Map(3 + more);
    packer.Str("name");
    packer.Str(name);
    packer.Str("type");
    packer.Integer(type);
    packer.Str("index");
    packer.Integer(static_cast<std::int64_t>(index));
}

template <typename Children>
void PackChildren(ValuePacker& packer, const char* key, const Children& children, bool attributes) {
    packer.Str(key);
    packer.Array(static_cast<std::size_t>(
        std::count_if(children.begin(), children.end(),
                      [&](const auto& child) { return child.isAttribute == attributes; })));
    ListedNames names;
    for (std::size_t index = 0; index < children.size(); ++index) {
        const auto& child = children[index];
        if (child.isAttribute == attributes)
            PackItemStart(packer, names.Next(child.name, index), child.type, index);
    }
}

}  // namespace

void PackedFrameWriter::AddLeaf(const std::string& name, int type, const vxJson::Value& value) {
    AddOrRestore("leaf", name, [&] {
        RequireLeafType(type);
        AddItem(name, type);
        Pack(value);
    });
}

void PackedFrameWriter::AddTable(const std::string& name, bool hashSort,
                                 const std::vector<std::string>& hashColumns) {
    AddOrRestore("table", name, [&] {
        AddTableItem(name, hashSort, PackedWith([&](ValuePacker& packer) {
                         packer.Array(hashColumns.size());
                         for (const std::string& column : hashColumns) packer.Str(column);
                     }));
    });
}

void PackedFrameWriter::AddColumn(const std::string& name, int type, const vxJson::Value& values) {
    AddOrRestore("column", name, [&] {
        if (!values.isArray() && !values.isNull()) throw Error("is neither an array nor null");
        RequireLeafType(type);
        AddChild(false, name, type);
        Pack(values);
    });
}

void PackedFrameWriter::AddAttribute(const std::string& name, int type,
                                     const vxJson::Value& value) {
    AddOrRestore("attribute", name, [&] {
        RequireLeafType(type);
        AddChild(true, name, type);
        Pack(value);
    });
}

void PackedFrameWriter::AddItems(const rapidjson::Value& document) {
    AddOrRestore("document of unit", name_, [&] {
        if (!document.IsArray()) throw Error("is not an array");
        ForEach("item", document, [this](const rapidjson::Value& item) { AddDocumentItem(item); });
        holdsDocument_ = true;
    });
}

std::string PackedFrameWriter::Frame() const {
    return Header() + payload_;
}

int PackedFrameWriter::HeaderLength() const {
    return static_cast<int>(Header().size());
}

vxJson::Value PackedFrameWriter::Offsets() const {
    const std::string text = JsonArray(items_, [](const Item& item) {
        if (item.type != kTableType) return std::to_string(item.offset);
        return JsonArray(item.children,
                         [](const Child& child) { return std::to_string(child.offset); });
    });
    std::istringstream stream(text);
    vxJson::Value offsets = detail::NullValue();
    vxJson::Reader().parse(stream, offsets, true);
    return offsets;
}

/// Runs `add`. If it throws, removes its additions and prefixes the error with the item's name.
template <typename Add>
void PackedFrameWriter::AddOrRestore(const char* part, const std::string& name, const Add& add) {
    const std::size_t items = items_.size();
    const std::size_t lastTable = lastTable_;
    const std::size_t children = lastTable == kNoTable ? 0 : items_[lastTable].children.size();
    const std::size_t bytes = payload_.size();
    try {
        Labelled([&] { return part + (" \"" + name) + '"'; }, add);
    } catch (...) {
        items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(items), items_.end());
        lastTable_ = lastTable;
        if (lastTable != kNoTable) {
            std::vector<Child>& list = items_[lastTable].children;
            list.erase(list.begin() + static_cast<std::ptrdiff_t>(children), list.end());
        }
        payload_.resize(bytes);
        throw;
    }
}

void PackedFrameWriter::AddItem(const std::string& name, int type) {
    items_.push_back({name, type, static_cast<int>(payload_.size()), false, "", {}});
}

void PackedFrameWriter::AddTableItem(const std::string& name, bool hashSort,
                                     const std::string& hashColumns) {
    items_.push_back({name, kTableType, 0, hashSort, hashColumns, {}});
    lastTable_ = items_.size() - 1;
}

void PackedFrameWriter::AddChild(bool isAttribute, const std::string& name, int type) {
    if (lastTable_ == kNoTable) throw Error("no table has been added");
    items_[lastTable_].children.push_back(
        {name, type, static_cast<int>(payload_.size()), isAttribute});
}

template <typename Value>
void PackedFrameWriter::Pack(const Value& value) {
    ValuePacker(payload_).Value(value);
    RequireSize(payload_.size());
}

void PackedFrameWriter::AddDocumentItem(const rapidjson::Value& item) {
    if (IsTable(item)) return AddDocumentTable(item);
    RequireMembers(item, kLeaf);
    AddItem(StringOf(item["name"]), item["type"].GetInt());
    Pack(item["value"]);
}

void PackedFrameWriter::AddDocumentTable(const rapidjson::Value& table) {
    RequireMembers(table, kTable);
    std::string hashColumns;
    if (!ValuePacker(hashColumns).JsonText(table["hashColumns"].GetString()))
        throw Error("\"hashColumns\" is not JSON");
    AddTableItem(StringOf(table["name"]), table["hashSort"].GetBool(), hashColumns);
    AddDocumentChildren(false, table["column"]);
    AddDocumentChildren(true, table["attributes"]);
}

void PackedFrameWriter::AddDocumentChildren(bool isAttribute, const rapidjson::Value& children) {
    ForEach(isAttribute ? "attribute" : "column", children, [&](const rapidjson::Value& child) {
        const bool hasValue = !IsTable(child);  // tables do not nest
        hasValue ? RequireMembers(child, kLeaf) : RequireMembers(child, kTableChild);
        AddChild(isAttribute, StringOf(child["name"]), child["type"].GetInt());
        if (hasValue) Pack(child["value"]);
    });
}

std::string PackedFrameWriter::Header() const {
    std::string header = PackedWith([this](ValuePacker& packer) {
        packer.Integer(kFormatVersion);
        packer.Str(name_);
        PackItems(packer);
    });
    RequireSize(header.size());
    return header;
}

void PackedFrameWriter::PackItems(ValuePacker& packer) const {
    if (items_.empty() && holdsDocument_) {
        // An empty schema would not decode. This one decodes to an empty document, because readers
        // strip the '$' and find no item with the empty name.
        packer.Array(1);
        return PackItemStart(packer, "$", 0, 0);
    }
    packer.Array(items_.size() + static_cast<std::size_t>(std::count_if(
                                     items_.begin(), items_.end(),
                                     [](const Item& item) { return StartsWithMark(item.name); })));
    ListedNames names;
    for (std::size_t index = 0; index < items_.size(); ++index) {
        const Item& item = items_[index];
        const bool marked = StartsWithMark(item.name);
        const std::string name = names.Next(item.name, index, !marked);
        if (marked) PackItem(packer, '$' + name, item, index);
        PackItem(packer, name, item, index);
    }
}

void PackedFrameWriter::PackItem(ValuePacker& packer, const std::string& name, const Item& item,
                                 std::size_t index) {
    if (item.type != kTableType) return PackItemStart(packer, name, item.type, index);
    PackItemStart(packer, name, item.type, index, 4);
    packer.Str("hashSort");
    packer.Bool(item.hashSort);
    packer.Str("hashColumns");
    packer.Packed(item.hashColumns);
    PackChildren(packer, "column", item.children, false);
    PackChildren(packer, "attributes", item.children, true);
}

}  // namespace dataengine
