#include "structure/detail/SelectionDecoder.h"

#include <cstring>
#include <msgpack.hpp>

#include "contracts/detail/JsonValues.h"

namespace dataengine::detail {
namespace {

/// Fills the members of an object of known size in their final places.
class MemberWriter {
  public:
    MemberWriter(rapidjson::Value& object, rapidjson::SizeType count, JsonPool& pool)
        : slot_(RawValues::MakeObject(object, count, pool)) {}

    /// Adds a null member and returns its value. `key` is referred to, not copied.
    rapidjson::Value& Add(rapidjson::Value::StringRefType key) {
        new (slot_) rapidjson::Value(key);
        auto* value = new (slot_ + 1) rapidjson::Value();
        slot_ += 2;
        return *value;
    }

    void AddTypeAndName(int type, const std::string& name, JsonPool& pool) {
        Add("type").SetInt(type);
        AddText("name", name, pool);
    }

    /// Adds a string up to its first zero byte.
    void AddText(rapidjson::Value::StringRefType key, const std::string& text, JsonPool& pool) {
        const auto size = static_cast<rapidjson::SizeType>(std::strlen(text.c_str()));
        RawValues::MakeString(Add(key), text.c_str(), size, pool);
    }

  private:
    rapidjson::Value* slot_;
};

/// Removes a leading '$'; returns whether there was one.
bool RemoveMark(std::string& name) {
    if (!HasMark(name)) return false;
    name.erase(0, 1);
    return true;
}

}  // namespace

SelectionDecoder::SelectionDecoder(const char* bytes, int size, const vxJson::Value& schema,
                                   const vxJson::Value& offsets, std::size_t selected,
                                   JsonPool& pool)
    : bytes_(bytes),
      size_(size),
      items_(schema, selected),
      offsets_(offsets),
      pool_(pool),
      null_(NullValue()) {}

void SelectionDecoder::AddSelected(const vxJson::Value& entry, rapidjson::Value& out) {
    std::string name = entry.isObject() ? entry["table"].asString() : entry.asString();
    RemoveMark(name);
    const vxJson::Value* item = items_.Find(name);
    if (item != nullptr) AddFound(*item, (*item)["type"].asInt(), name, entry, out);
}

void SelectionDecoder::AddItem(const vxJson::Value& item, rapidjson::Value& out) {
    const vxJson::Value& name = item["name"];
    if (!name.isString()) return;
    std::string text = name.asString();
    const bool hasMark = RemoveMark(text);
    const vxJson::Value* found = items_.Find(text, hasMark ? nullptr : &item);
    if (found == nullptr) return;
    const int type = (*found)["type"].asInt();
    // An item without columns is selected as a leaf, by its name only.
    const bool asLeaf = type != kTableType || !item["column"].isArray();
    AddFound(*found, type, text, asLeaf ? name : null_, out);
}

void SelectionDecoder::AddFound(const vxJson::Value& item, int type, const std::string& name,
                                const vxJson::Value& entry, rapidjson::Value& out) {
    const int index = item["index"].asInt();
    if (type != kTableType) {
        AddLeaf(type, name, offsets_[index], out);
    } else if (entry.isObject() || entry.isNull()) {
        AddTable(item, name, offsets_[index], entry["column"], entry["attributes"], out);
    } else {
        // A table selected by name only: let the value decide: operator[] on a non-object throws.
        vxJson::Value copy(entry);
        const vxJson::Value column = copy["column"];
        const vxJson::Value attributes = copy["attributes"];
        AddTable(item, name, offsets_[index], column, attributes, out);
    }
}

void SelectionDecoder::AddLeaf(int type, const std::string& name, const vxJson::Value& offset,
                               rapidjson::Value& out) {
    rapidjson::Value leaf;
    MemberWriter members(leaf, 3, pool_);
    members.AddTypeAndName(type, name, pool_);
    members.Add("value") = DecodeAt(offset.asInt());
    out.PushBack(leaf, pool_);
}

void SelectionDecoder::AddTable(const vxJson::Value& item, const std::string& name,
                                const vxJson::Value& offsets, const vxJson::Value& column,
                                const vxJson::Value& attributes, rapidjson::Value& out) {
    rapidjson::Value table;
    MemberWriter members(table, 6, pool_);
    members.AddTypeAndName(kTableType, name, pool_);
    DecodeChildren(column, item["column"], offsets, members.Add("column"));
    members.Add("hashSort").SetBool(item["hashSort"].asBool());
    members.AddText("hashColumns", item["hashColumns"].toString(false), pool_);
    DecodeChildren(attributes, item["attributes"], offsets, members.Add("attributes"));
    out.PushBack(table, pool_);
}

void SelectionDecoder::DecodeChildren(const vxJson::Value& selection, const vxJson::Value& children,
                                      const vxJson::Value& offsets, rapidjson::Value& list) {
    list.SetArray();
    const bool all = selection.isNull();
    if (!all && !selection.isArray()) return;

    const vxJson::Value& names = all ? children : selection;
    RawValues::Reserve(list, names.size(), pool_);
    NameIndex index(children, names.size());
    const auto end = names.end();
    for (auto position = names.begin(); !position.isEqual(end); position.increment()) {
        const vxJson::Value& entry = position.deref();
        if (!all) {
            const std::string name = entry.asString();
            AddChild(index.Find(name), name, offsets, list);
        } else if (const vxJson::Value& own = entry["name"]; own.isString()) {
            const std::string name = own.asString();
            AddChild(index.Find(name, &entry), name, offsets, list);
        }
    }
}

void SelectionDecoder::AddChild(const vxJson::Value* child, const std::string& name,
                                const vxJson::Value& offsets, rapidjson::Value& list) {
    if (child == nullptr) return;
    const int type = (*child)["type"].asInt();
    const int index = (*child)["index"].asInt();
    if (type != kTableType) return AddLeaf(type, name, offsets[index], list);
    // Tables do not nest: a table within a table has no value.
    rapidjson::Value object;
    MemberWriter members(object, 2, pool_);
    members.AddTypeAndName(type, name, pool_);
    list.PushBack(object, pool_);
}

rapidjson::Value SelectionDecoder::DecodeAt(int offset) {
    if (offset < 0 || offset > size_) throw msgpack::insufficient_bytes("insufficient bytes");
    return DecodeValue(bytes_ + offset, static_cast<std::size_t>(size_ - offset), pool_);
}

}  // namespace dataengine::detail
