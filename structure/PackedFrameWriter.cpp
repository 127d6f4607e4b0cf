#include "structure/PackedFrameWriter.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <set>
#include <string_view>
#include <utility>

#include "contracts/detail/JsonValues.h"
#include "contracts/detail/rapidjson/FindMember.h"
#include "contracts/detail/rapidjson/ParseJson.h"
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

using detail::ByteBuffer;
using detail::Error;
using detail::FindMember;
using detail::ValuePacker;

/// The members that all items and children of a schema have, and the offset of the value.
struct Field {
    std::string name;
    int type;
    int index;
    int offset;  // 0 for a table
};

struct Item : Field {
    explicit Item(Field field) : Field(std::move(field)) {}

    // The following are of tables only.
    bool hashSort = false;
    std::string hashColumns;  // packed
    std::vector<Field> columns;
    std::vector<Field> attributes;
};

/// Runs `step` and prefixes the message of an error with `label()`.
template <typename Label, typename Step>
void Labelled(const Label& label, const Step& step) {
    try {
        step();
    } catch (const Error& error) {
        throw Error(label() + ": " + error.what());
    }
}

std::string Label(const char* part, const std::string& name) {
    return part + (" \"" + name) + '"';
}

void RequireValueType(int type) {
    if (type == kTableType) throw Error("type 11 marks a table");
}

/// A member of a decoded item, and the test for its kind, which is null if any kind is allowed.
struct Member {
    const char* key;
    bool (rapidjson::Value::*isOfKind)() const;
};
constexpr Member kType = {"type", &rapidjson::Value::IsInt};
constexpr Member kName = {"name", &rapidjson::Value::IsString};
constexpr Member kField[] = {kType, kName, {"value", nullptr}};
constexpr Member kFieldOfTableType[] = {kType, kName};
constexpr Member kTable[] = {kType,
                             kName,
                             {"column", &rapidjson::Value::IsArray},
                             {"hashSort", &rapidjson::Value::IsBool},
                             {"hashColumns", &rapidjson::Value::IsString},
                             {"attributes", &rapidjson::Value::IsArray}};

/// Returns the members of an item, which must have exactly these.
template <std::size_t count>
std::array<const rapidjson::Value*, count> RequireMembers(const rapidjson::Value& item,
                                                          const Member (&members)[count]) {
    if (!item.IsObject()) throw Error("is not an object");
    std::array<const rapidjson::Value*, count> found{};
    for (std::size_t i = 0; i < count; ++i) {
        const auto& [key, isOfKind] = members[i];
        found[i] = FindMember(item, key);
        if (found[i] == nullptr || (isOfKind != nullptr && !(found[i]->*isOfKind)()))
            throw Error(std::string("\"") + key + "\" is missing or of another kind");
    }
    if (item.MemberCount() != count) throw Error("has members that no decoded item has");
    return found;
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
                                                        : Label(position.c_str(), StringOf(*name));
        };
        Labelled(label, [&] { step(list[i]); });
    }
}

/// Returns "hashColumns" of a document packed for the schema.
std::string PackedHashColumns(const rapidjson::Value& text) {
    detail::JsonPool pool;
    rapidjson::Value value;
    if (detail::ParseJson<rapidjson::kParseFullPrecisionFlag>(text.GetString(), value, pool)
            .IsError())
        throw Error("\"hashColumns\" is not JSON");
    ByteBuffer bytes;
    ValuePacker(bytes).SchemaValue(value);
    return std::string(bytes.Bytes());
}

/// Returns a name that no other element of its list has, and that documents cut to `name`.
std::string Numbered(std::string_view name, int index) {
    return std::string(name).append(1, '\0').append(std::to_string(index));
}

/// Chooses the names by which the elements of one list are found: the first element of each name
/// keeps it. Ordered, because colliding hashes of chosen names would take quadratic time.
class ListedNames {
  public:
    std::string Next(const Field& field) {
        const std::string_view name = detail::UpToZero(field.name);
        return taken_.insert(name).second ? std::string(name) : Numbered(name, field.index);
    }

  private:
    std::set<std::string_view> taken_;
};

/// Starts the map of an item with the members of all items; the caller packs `more` members.
void PackField(ValuePacker& packer, const std::string& name, const Field& field,
               std::size_t more = 0) {
    packer.Map(3 + more);
    packer.Str("name");
    packer.Str(name);
    packer.Str("type");
    packer.Integer(field.type);
    packer.Str("index");
    packer.Integer(field.index);
}

void PackChildren(ValuePacker& packer, const char* key, const std::vector<Field>& children) {
    packer.Str(key);
    packer.Array(children.size());
    ListedNames names;
    for (const Field& child : children) PackField(packer, names.Next(child), child);
}

void PackItem(ValuePacker& packer, const std::string& name, const Item& item) {
    if (item.type != kTableType) return PackField(packer, name, item);
    PackField(packer, name, item, 4);
    packer.Str("hashSort");
    packer.Bool(item.hashSort);
    packer.Str("hashColumns");
    packer.Packed(item.hashColumns);
    PackChildren(packer, "column", item.columns);
    PackChildren(packer, "attributes", item.attributes);
}

}  // namespace

/// Every operation that throws leaves the content as it was.
class PackedFrameWriter::Content {
  public:
    explicit Content(const std::string& name) : name_(name) {}

    void AddLeaf(const std::string& name, int type, const vxJson::Value& value) {
        AddOrRestore("leaf", name, [&] {
            RequireValueType(type);
            AddLeafItem(name, type, value);
        });
    }

    /// `hashColumns` is packed. Returns the index of the table.
    std::size_t AddTable(const std::string& name, bool hashSort, const std::string& hashColumns) {
        Item table({name, kTableType, ItemCount(), 0});
        table.hashSort = hashSort;
        table.hashColumns = hashColumns;
        items_.push_back(std::move(table));
        return items_.size() - 1;
    }

    void AddColumn(std::size_t table, const std::string& name, int type,
                   const vxJson::Value& values) {
        AddOrRestore("column", name, [&] {
            if (!values.isArray() && !values.isNull()) throw Error("is neither an array nor null");
            Item& item = OpenTable(table, type);
            AddChild(item, item.columns, name, type, values);
        });
    }

    void AddAttribute(std::size_t table, const std::string& name, int type,
                      const vxJson::Value& value) {
        AddOrRestore("attribute", name, [&] {
            Item& item = OpenTable(table, type);
            AddChild(item, item.attributes, name, type, value);
        });
    }

    void AddItems(const rapidjson::Value& document);
    std::string Header() const;
    std::string_view Payload() const { return payload_.Bytes(); }
    vxJson::Value Offsets() const;

  private:
    int ItemCount() const { return static_cast<int>(items_.size()); }

    /// Runs `add`, which adds to one list last. If it throws, removes its additions and prefixes
    /// the error with the item's name.
    template <typename Add>
    void AddOrRestore(const char* part, const std::string& name, const Add& add) {
        const auto count = static_cast<std::ptrdiff_t>(items_.size());
        const std::size_t bytes = payload_.Size();
        try {
            Labelled([&] { return Label(part, name); }, add);
        } catch (...) {
            items_.erase(items_.begin() + count, items_.end());
            payload_.Truncate(bytes);
            throw;
        }
    }

    /// Appends a value to the payload.
    template <typename Value>
    Field MakeField(const std::string& name, int type, int index, const Value& value) {
        const std::size_t offset = payload_.Size();
        ValuePacker(payload_).Value(value);
        detail::RequireFrameSize(payload_.Size());
        return {name, type, index, static_cast<int>(offset)};
    }

    template <typename Value>
    void AddLeafItem(const std::string& name, int type, const Value& value) {
        items_.emplace_back(MakeField(name, type, ItemCount(), value));
    }

    template <typename Value>
    void AddChild(Item& table, std::vector<Field>& list, const std::string& name, int type,
                  const Value& value) {
        list.push_back(MakeField(name, type, NextIndex(table), value));
    }

    static int NextIndex(const Item& table) {
        return static_cast<int>(table.columns.size() + table.attributes.size());
    }

    Item& OpenTable(std::size_t table, int type) {
        if (table + 1 != items_.size()) throw Error("another item was added after the table");
        RequireValueType(type);
        return items_[table];
    }

    void AddDocumentItem(const rapidjson::Value& item);
    void AddDocumentTable(const rapidjson::Value& table);
    void AddDocumentChildren(Item& item, std::vector<Field>& list, const char* part,
                             const rapidjson::Value& children);

    void PackSchema(ValuePacker& packer) const;

    std::string name_;
    std::vector<Item> items_;     // the index of an item is its position
    bool holdsDocument_ = false;  // whether a document was added, if only an empty one
    ByteBuffer payload_;
};

void PackedFrameWriter::Content::AddItems(const rapidjson::Value& document) {
    AddOrRestore("document of unit", name_, [&] {
        if (!document.IsArray()) throw Error("is not an array");
        ForEach("item", document, [this](const auto& item) { AddDocumentItem(item); });
    });
    holdsDocument_ = true;
}

void PackedFrameWriter::Content::AddDocumentItem(const rapidjson::Value& item) {
    if (IsTable(item)) return AddDocumentTable(item);
    const auto [type, name, value] = RequireMembers(item, kField);
    AddLeafItem(StringOf(*name), type->GetInt(), *value);
}

void PackedFrameWriter::Content::AddDocumentTable(const rapidjson::Value& table) {
    const auto [type, name, columns, hashSort, hashColumns, attributes] =
        RequireMembers(table, kTable);
    static_cast<void>(type);  // kTableType
    AddTable(StringOf(*name), hashSort->GetBool(), PackedHashColumns(*hashColumns));
    Item& item = items_.back();
    AddDocumentChildren(item, item.columns, "column", *columns);
    AddDocumentChildren(item, item.attributes, "attribute", *attributes);
}

void PackedFrameWriter::Content::AddDocumentChildren(Item& item, std::vector<Field>& list,
                                                     const char* part,
                                                     const rapidjson::Value& children) {
    ForEach(part, children, [&](const rapidjson::Value& child) {
        if (IsTable(child)) {  // tables do not nest: this one has no value
            const auto [type, name] = RequireMembers(child, kFieldOfTableType);
            list.push_back({StringOf(*name), type->GetInt(), NextIndex(item), 0});
        } else {
            const auto [type, name, value] = RequireMembers(child, kField);
            AddChild(item, list, StringOf(*name), type->GetInt(), *value);
        }
    });
}

std::string PackedFrameWriter::Content::Header() const {
    ByteBuffer header;
    ValuePacker packer(header);
    packer.Integer(detail::kFormatVersion);
    packer.Str(name_);
    PackSchema(packer);
    detail::RequireFrameSize(header.Size());
    return std::string(header.Bytes());
}

void PackedFrameWriter::Content::PackSchema(ValuePacker& packer) const {
    if (items_.empty() && holdsDocument_) {
        // An empty schema would not decode. This one decodes to an empty document, because readers
        // strip the '$' and find no item with the empty name.
        packer.Array(1);
        return PackField(packer, "$", {"", 0, 0, 0});
    }
    const auto isMarked = [](const Item& item) { return detail::HasMark(item.name); };
    packer.Array(items_.size() +
                 static_cast<std::size_t>(std::count_if(items_.begin(), items_.end(), isMarked)));
    ListedNames names;
    for (const Item& item : items_) {
        if (!isMarked(item)) {
            PackItem(packer, names.Next(item), item);
            continue;
        }
        // Readers strip one '$' of each name of the list: the first listing selects the second, and
        // the second, numbered like no other, selects nothing.
        const std::string name = Numbered(detail::UpToZero(item.name), item.index);
        PackItem(packer, '$' + name, item);
        PackItem(packer, name, item);
    }
}

vxJson::Value PackedFrameWriter::Content::Offsets() const {
    vxJson::Value offsets = detail::EmptyArray();
    for (const Item& item : items_) {
        if (item.type != kTableType) {
            offsets.append(vxJson::Value(item.offset));
            continue;
        }
        std::vector<int> ofChildren(static_cast<std::size_t>(NextIndex(item)));
        for (const auto* list : {&item.columns, &item.attributes}) {
            for (const Field& child : *list)
                ofChildren[static_cast<std::size_t>(child.index)] = child.offset;
        }
        vxJson::Value inner = detail::EmptyArray();
        for (const int offset : ofChildren) inner.append(vxJson::Value(offset));
        offsets.append(std::move(inner));
    }
    return offsets;
}

PackedFrameWriter::PackedFrameWriter(const std::string& name)
    : content_(std::make_unique<Content>(name)) {}
PackedFrameWriter::PackedFrameWriter(const PackedFrameWriter& other)
    : content_(std::make_unique<Content>(*other.content_)) {}
PackedFrameWriter::PackedFrameWriter(PackedFrameWriter&& other) noexcept = default;
PackedFrameWriter& PackedFrameWriter::operator=(const PackedFrameWriter& other) {
    return *this = PackedFrameWriter(other);
}
PackedFrameWriter& PackedFrameWriter::operator=(PackedFrameWriter&& other) noexcept = default;
PackedFrameWriter::~PackedFrameWriter() = default;

void PackedFrameWriter::AddLeaf(const std::string& name, int type, const vxJson::Value& value) {
    content_->AddLeaf(name, type, value);
}

PackedFrameWriter::Table PackedFrameWriter::AddTable(const std::string& name, bool hashSort,
                                                     const std::vector<std::string>& hashColumns) {
    ByteBuffer packed;
    ValuePacker packer(packed);
    packer.Array(hashColumns.size());
    for (const std::string& column : hashColumns) packer.Str(column);
    const std::size_t index = content_->AddTable(name, hashSort, std::string(packed.Bytes()));
    return Table(*content_, index);
}

void PackedFrameWriter::AddItems(const rapidjson::Value& document) {
    content_->AddItems(document);
}

std::string PackedFrameWriter::Frame() const {
    return content_->Header().append(content_->Payload());
}

int PackedFrameWriter::HeaderLength() const {
    return static_cast<int>(content_->Header().size());
}

vxJson::Value PackedFrameWriter::Offsets() const {
    return content_->Offsets();
}

void PackedFrameWriter::Table::AddColumn(const std::string& name, int type,
                                         const vxJson::Value& values) {
    content_->AddColumn(index_, name, type, values);
}

void PackedFrameWriter::Table::AddAttribute(const std::string& name, int type,
                                            const vxJson::Value& value) {
    content_->AddAttribute(index_, name, type, value);
}

}  // namespace dataengine
