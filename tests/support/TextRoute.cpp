#include "tests/support/TextRoute.h"

#include <cstdint>
#include <iomanip>
#include <msgpack.hpp>
#include <sstream>

namespace {

using Allocator = rapidjson::Document::AllocatorType;

constexpr int kTableType = 11;

/// Prints `object`: scalars as msgpack does, containers, bin and ext as documents define them.
void Print(std::ostream& output, const msgpack::object& object) {
    const char* separator = "";
    switch (object.type) {
        case msgpack::type::BIN:
            output << '"';
            output.write(object.via.bin.ptr, object.via.bin.size) << '"';
            return;
        case msgpack::type::EXT:
            output << "EXT";
            return;
        case msgpack::type::ARRAY:
            output << '[';
            for (const msgpack::object& element : object.via.array) {
                output << std::exchange(separator, ", ");
                Print(output, element);
            }
            output << ']';
            return;
        case msgpack::type::MAP:
            output << '{';
            for (const msgpack::object_kv& pair : object.via.map) {
                output << std::exchange(separator, ", ");
                Print(output, pair.key);
                output << ':';
                Print(output, pair.val);
            }
            output << '}';
            return;
        default:
            output << object;
    }
}

/// Checks packed bytes and throws as unpacking does.
struct CheckingVisitor : msgpack::null_visitor {
    void parse_error(std::size_t, std::size_t) { throw msgpack::parse_error("parse error"); }
    void insufficient_bytes(std::size_t, std::size_t) {
        throw msgpack::insufficient_bytes("insufficient bytes");
    }
};

/// Unpacks a value. msgpack allocates the declared size of an array before it reads the elements,
/// so values that declare more elements than there are bytes are only checked.
msgpack::object_handle Unpack(const char* bytes, std::size_t size) {
    try {
        return msgpack::unpack(bytes, size, nullptr, nullptr, msgpack::unpack_limit(size, size));
    } catch (const msgpack::size_overflow&) {
        CheckingVisitor visitor;
        msgpack::parse(bytes, size, visitor);
        throw;
    }
}

template <typename List, typename Action>
void ForEach(List& list, const Action& action) {
    for (auto it = list.begin(), end = list.end(); !it.isEqual(end); it.increment())
        action(it.deref());
}

rapidjson::Value CopiedText(const std::string& text, Allocator& allocator) {
    return rapidjson::Value(text.c_str(), allocator);  // up to a first zero byte
}

rapidjson::Value ValueAt(const char* buf, int len, int offset, Allocator& allocator) {
    if (offset < 0 || offset > len) throw msgpack::insufficient_bytes("insufficient bytes");
    const auto handle = Unpack(buf + offset, static_cast<std::size_t>(len - offset));
    std::ostringstream text;
    text << std::fixed << std::setprecision(2);
    Print(text, handle.get());
    rapidjson::Document document(&allocator);
    document.Parse(text.str().c_str());
    return rapidjson::Value(std::move(document.Move()));
}

/// Returns the type and name of an item and, unless it is a table, its value.
rapidjson::Value ElementOf(const vxJson::Value& item, const std::string& name,
                           const vxJson::Value& offsets, const char* buf, int len,
                           Allocator& allocator) {
    const int type = item["type"].asInt();
    const int index = item["index"].asInt();
    rapidjson::Value element(rapidjson::kObjectType);
    element.AddMember("type", type, allocator);
    element.AddMember("name", CopiedText(name, allocator), allocator);
    if (type != kTableType)
        element.AddMember("value", ValueAt(buf, len, offsets[index].asInt(), allocator), allocator);
    return element;
}

/// Returns the columns or attributes of a table. A null `selection` is replaced by all names.
rapidjson::Value GetTableData(vxJson::Value& selection, const vxJson::Value& children,
                              const vxJson::Value& offsets, const char* buf, int len,
                              Allocator& allocator) {
    if (selection.isNull()) {
        ForEach(children, [&](const vxJson::Value& child) {
            if (child["name"].isString()) selection.append(child["name"]);
        });
    }
    rapidjson::Value result(rapidjson::kArrayType);
    if (!selection.isArray()) return result;
    ForEach(selection, [&](const vxJson::Value& entry) {
        const std::string name = entry.asString();
        const vxJson::Value* child = TextRoute::GetChildItemByName(name, children);
        if (child == nullptr) return;
        result.PushBack(ElementOf(*child, name, offsets, buf, len, allocator), allocator);
    });
    return result;
}

vxJson::Value EverythingIn(const vxJson::Value& schema) {
    vxJson::Value selection;
    ForEach(schema, [&](const vxJson::Value& item) {
        if (!item["name"].isString()) return;
        if (item["column"].isArray())
            selection.append(vxJson::Value())["table"] = item["name"];
        else
            selection.append(item["name"]);
    });
    return selection;
}

}  // namespace

const vxJson::Value* TextRoute::GetChildItemByName(const std::string& name,
                                                   const vxJson::Value& list) {
    if (!list.isArray()) return nullptr;
    for (auto it = list.begin(), end = list.end(); !it.isEqual(end); it.increment()) {
        const vxJson::Value& item = it.deref();
        if (item["name"].asString() == name) return &item;
    }
    return nullptr;
}

bool TextRoute::ParseBinaryDataToJson(const char* buf, int len, const vxJson::Value& schema,
                                      const vxJson::Value& offsets, const vxJson::Value& fields,
                                      rapidjson::Document& out) {
    if (!schema.isArray() || !offsets.isArray()) return false;
    vxJson::Value selection(fields);
    if (selection.isNull()) selection = EverythingIn(schema);
    if (!selection.isArray()) return false;

    out.SetArray();
    Allocator& allocator = out.GetAllocator();
    ForEach(selection, [&](vxJson::Value& entry) {
        std::string name = entry.isObject() ? entry["table"].asString() : entry.asString();
        if (name[0] == '$') name.erase(0, 1);
        const vxJson::Value* item = GetChildItemByName(name, schema);
        if (item == nullptr) return;
        rapidjson::Value element = ElementOf(*item, name, offsets, buf, len, allocator);
        if (element["type"] == kTableType) {
            const vxJson::Value& inner = offsets[(*item)["index"].asInt()];
            const auto children = [&](const char* key) {
                return GetTableData(entry[key], (*item)[key], inner, buf, len, allocator);
            };
            element.AddMember("column", children("column"), allocator);
            element.AddMember("hashSort", (*item)["hashSort"].asBool(), allocator);
            const std::string hashColumns = (*item)["hashColumns"].toString(false);
            element.AddMember("hashColumns", CopiedText(hashColumns, allocator), allocator);
            element.AddMember("attributes", children("attributes"), allocator);
        }
        out.PushBack(element, allocator);
    });
    return true;
}
