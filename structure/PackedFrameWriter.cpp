#include "structure/PackedFrameWriter.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <sstream>
#include <string_view>
#include <unordered_set>

#include "contracts/detail/Values.h"
#include "structure/detail/SelectionDecoder.h"
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

namespace {

using dataengine::kTableType;
using dataengine::ValuePacker;
using dataengine::WriterError;

constexpr int kFormatVersion = 1;
constexpr std::size_t kMaxSize = std::numeric_limits<int>::max();

/// Runs `step`. The message of an error gets the name of the part that it concerns.
template <typename Step>
void Naming(const char* part, std::string_view name, const Step& step) {
    try {
        step();
    } catch (const WriterError& error) {
        throw WriterError(std::string(part).append(" \"").append(name) + "\": " + error.what());
    }
}

void RequireLeafType(int type) {
    if (type == kTableType) throw WriterError("type 11 marks a table");
}

void RequireSize(std::size_t size) {
    if (size > kMaxSize) throw WriterError("a frame holds up to 2147483647 bytes");
}

/// Returns the member `key` of an item that the decoder made.
const rapidjson::Value& MemberOf(const rapidjson::Value& item, const char* key) {
    const auto member = item.FindMember(key);
    if (member == item.MemberEnd()) throw WriterError(std::string("has no \"") + key + '"');
    return member->value;
}

const rapidjson::Value& StringMember(const rapidjson::Value& item, const char* key) {
    const rapidjson::Value& value = MemberOf(item, key);
    if (!value.IsString()) throw WriterError(std::string("\"") + key + "\" is not a string");
    return value;
}

std::string NameOf(const rapidjson::Value& item) {
    if (!item.IsObject()) throw WriterError("is not an object");
    const rapidjson::Value& name = StringMember(item, "name");
    return std::string(name.GetString(), name.GetStringLength());
}

int TypeOf(const rapidjson::Value& item) {
    const rapidjson::Value& type = MemberOf(item, "type");
    if (!type.IsInt()) throw WriterError("\"type\" is not a 32-bit integer");
    return type.GetInt();
}

void RequireMembers(const rapidjson::Value& item, rapidjson::SizeType count) {
    if (item.MemberCount() != count) throw WriterError("has members that no decoded item has");
}

/// Chooses the names by which the elements of one list are found: the first of each name keeps it,
/// any other gets a zero byte and its index appended, which documents cut off again.
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

bool StartsWithMark(const std::string& name) {
    return !name.empty() && name.front() == '$';
}

/// Packs the members that all items have; those of a table are `more`.
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
        std::string packed;
        ValuePacker packer(packed);
        packer.Array(hashColumns.size());
        for (const std::string& column : hashColumns) packer.Str(column);
        AddTableItem(name, hashSort, packed);
    });
}

void PackedFrameWriter::AddColumn(const std::string& name, int type, const vxJson::Value& values) {
    AddOrRestore("column", name, [&] {
        if (!values.isArray() && !values.isNull())
            throw WriterError("is neither an array nor null");
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
        if (!document.IsArray()) throw WriterError("is not an array");
        for (rapidjson::SizeType i = 0; i < document.Size(); ++i) {
            try {
                AddDocumentItem(document[i]);
            } catch (const WriterError& error) {
                throw WriterError("item " + std::to_string(i) + ": " + error.what());
            }
        }
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
    std::string text = "[";
    const auto separate = [&] {
        if (text.back() != '[') text += ',';
    };
    for (const Item& item : items_) {
        separate();
        if (item.type != kTableType) {
            text += std::to_string(item.offset);
            continue;
        }
        text += '[';
        for (const Child& child : item.children) {
            separate();
            text += std::to_string(child.offset);
        }
        text += ']';
    }
    std::istringstream stream(text + ']');
    vxJson::Value offsets = dataengine::NullValue();
    vxJson::Reader().parse(stream, offsets, true);
    return offsets;
}

/// Runs `add`. If it throws, what it added is removed, and an error gets the name of its item.
template <typename Add>
void PackedFrameWriter::AddOrRestore(const char* part, const std::string& name, const Add& add) {
    const std::size_t items = items_.size();
    const std::size_t lastTable = lastTable_;
    const std::size_t children = lastTable == kNoTable ? 0 : items_[lastTable].children.size();
    const std::size_t bytes = payload_.size();
    try {
        Naming(part, name, add);
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
    if (lastTable_ == kNoTable) throw WriterError("no table has been added");
    items_[lastTable_].children.push_back(
        {name, type, static_cast<int>(payload_.size()), isAttribute});
}

template <typename Value>
void PackedFrameWriter::Pack(const Value& value) {
    ValuePacker(payload_).Value(value);
    RequireSize(payload_.size());
}

void PackedFrameWriter::AddDocumentItem(const rapidjson::Value& item) {
    const std::string name = NameOf(item);
    const int type = TypeOf(item);
    if (type == kTableType) {
        Naming("table", name, [&] { AddDocumentTable(name, item); });
        return;
    }
    Naming("leaf", name, [&] {
        RequireMembers(item, 3);
        AddItem(name, type);
        Pack(MemberOf(item, "value"));
    });
}

void PackedFrameWriter::AddDocumentTable(const std::string& name, const rapidjson::Value& table) {
    RequireMembers(table, 6);
    const rapidjson::Value& hashSort = MemberOf(table, "hashSort");
    if (!hashSort.IsBool()) throw WriterError("\"hashSort\" is not a boolean");
    std::string hashColumns;
    if (!ValuePacker(hashColumns).JsonText(StringMember(table, "hashColumns").GetString()))
        throw WriterError("\"hashColumns\" is not JSON");
    AddTableItem(name, hashSort.GetBool(), hashColumns);
    AddDocumentChildren(false, MemberOf(table, "column"));
    AddDocumentChildren(true, MemberOf(table, "attributes"));
}

void PackedFrameWriter::AddDocumentChildren(bool isAttribute, const rapidjson::Value& children) {
    const char* part = isAttribute ? "attribute" : "column";
    if (!children.IsArray()) throw WriterError(std::string(part) + " list is not an array");
    for (const rapidjson::Value& child : children.GetArray()) {
        const std::string name = NameOf(child);
        Naming(part, name, [&] {
            const int type = TypeOf(child);
            const bool hasValue = type != kTableType;  // tables do not nest
            RequireMembers(child, hasValue ? 3 : 2);
            AddChild(isAttribute, name, type);
            if (hasValue) Pack(MemberOf(child, "value"));
        });
    }
}

std::string PackedFrameWriter::Header() const {
    std::string header;
    ValuePacker packer(header);
    packer.Integer(kFormatVersion);
    packer.Str(name_);

    if (items_.empty() && holdsDocument_) {
        // Decodes to an empty document; an empty schema would not decode. Readers strip the '$' and
        // find no item of that name.
        packer.Array(1);
        PackItemStart(packer, "$", 0, 0);
    } else {
        PackItems(packer);
    }
    RequireSize(header.size());
    return header;
}

void PackedFrameWriter::PackItems(ValuePacker& packer) const {
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
