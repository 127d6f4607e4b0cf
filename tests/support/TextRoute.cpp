#include "tests/support/TextRoute.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <cstdint>
#include <iomanip>
#include <msgpack.hpp>
#include <ostream>
#include <sstream>
#include <string_view>

namespace {

constexpr int kTableType = 11;

// Deeper texts are parsed by the same grammar without rapidjson's recursion.
constexpr std::size_t kRecursiveDepth = 1000;

/// An array or map on the way through an object. A map counts as twice its pairs: key, value, key.
struct OpenObject {
    const msgpack::object* object;
    std::uint64_t next;

    bool IsMap() const { return object->type == msgpack::type::MAP; }

    std::uint64_t Count() const {
        return IsMap() ? std::uint64_t{2} * object->via.map.size : object->via.array.size;
    }

    const msgpack::object& Take() {
        const std::uint64_t at = next++;
        if (!IsMap()) return object->via.array.ptr[at];
        const msgpack::object_kv& pair = object->via.map.ptr[at / 2];
        return at % 2 == 0 ? pair.key : pair.val;
    }
};

bool IsContainer(const msgpack::object& object) {
    return object.type == msgpack::type::ARRAY || object.type == msgpack::type::MAP;
}

void PrintByte(std::ostream& output, char byte) {
    constexpr std::string_view kShort = "\b\t\n\f\r\"/\\";
    const unsigned code = static_cast<unsigned char>(byte);
    if (code >= 32 && code != 127 && byte != '"' && byte != '/' && byte != '\\') {
        output << byte;
    } else if (const std::size_t at = kShort.find(byte); at != std::string_view::npos) {
        output << '\\' << "btnfr\"/\\"[at];
    } else {
        const std::ios::fmtflags flags = output.flags();
        output << "\\u" << std::hex << std::setw(4) << std::setfill('0') << code;
        output.flags(flags);
    }
}

void PrintScalar(std::ostream& output, const msgpack::object& object) {
    namespace type = msgpack::type;
    const auto kind = object.type;
    if (kind == type::NIL) output << "null";
    if (kind == type::BOOLEAN) output << (object.via.boolean ? "true" : "false");
    if (kind == type::POSITIVE_INTEGER) output << object.via.u64;
    if (kind == type::NEGATIVE_INTEGER) output << object.via.i64;
    if (kind == type::FLOAT32 || kind == type::FLOAT64) output << object.via.f64;
    if (kind == type::EXT) output << "EXT";
    if (kind != type::STR && kind != type::BIN) return;
    output << '"';
    if (kind == type::BIN) output.write(object.via.bin.ptr, object.via.bin.size);
    for (std::uint32_t i = 0; kind == type::STR && i < object.via.str.size; ++i)
        PrintByte(output, object.via.str.ptr[i]);
    output << '"';
}

/// Walks packed bytes, keeps nothing, and raises what unpacking them would raise.
struct WalkingVisitor : msgpack::null_visitor {
    void parse_error(std::size_t, std::size_t) { throw msgpack::parse_error("parse error"); }
    void insufficient_bytes(std::size_t, std::size_t) {
        throw msgpack::insufficient_bytes("insufficient bytes");
    }
};

/// What a print has met.
struct Printed {
    std::size_t depth = 0;
};

/// Prints `object` as the stream's own state wants its floats. Text is escaped, `bin` is not.
Printed PrintObject(std::ostream& output, const msgpack::object& root) {
    Printed printed;
    std::vector<OpenObject> open;
    const msgpack::object* object = &root;
    for (;;) {
        if (IsContainer(*object)) {
            open.push_back({object, 0});
            printed.depth = std::max(printed.depth, open.size());
            output << (open.back().IsMap() ? '{' : '[');
        } else {
            PrintScalar(output, *object);
        }
        while (!open.empty() && open.back().next == open.back().Count()) {
            output << (open.back().IsMap() ? '}' : ']');
            open.pop_back();
        }
        if (open.empty()) return printed;
        OpenObject& container = open.back();
        if (container.IsMap() && container.next % 2 == 1)
            output << ':';
        else if (container.next > 0)
            output << ", ";
        object = &container.Take();
    }
}

/// Unpacks the object at the start of `length` bytes and says in `taken` how many it took.
///
/// msgpack allocates what an array declares before it looks for the elements. No object can hold
/// more elements or bytes than there are bytes left, so that is the limit set for it; past the
/// limit, the bytes are walked without keeping them, to raise what they would have raised.
msgpack::object_handle Unpack(const char* bytes, std::size_t length, std::size_t& taken) {
    bool referenced = false;
    taken = 0;
    try {
        return msgpack::unpack(bytes, length, taken, referenced, nullptr, nullptr,
                               msgpack::unpack_limit(length, length));
    } catch (const msgpack::size_overflow&) {
        WalkingVisitor visitor;
        std::size_t offset = 0;
        msgpack::parse(bytes, length, offset, visitor);
        throw;
    }
}

/// The value of `object` in `allocator`; null for whatever does not print as JSON.
rapidjson::Value ObjectToJson(const msgpack::object& object, TextRoute::Allocator& allocator) {
    std::stringstream stream;
    stream << std::fixed << std::setprecision(2);
    const Printed printed = PrintObject(stream, object);
    const std::string text = stream.str();

    rapidjson::Document document(&allocator);
    if (printed.depth <= kRecursiveDepth)
        document.Parse(text.c_str());
    else
        document.Parse<rapidjson::kParseIterativeFlag>(text.c_str());
    rapidjson::Value value;
    value.Swap(document);
    return value;
}

template <typename List, typename Action>
void ForEach(List& list, const Action& action) {
    for (auto it = list.begin(), end = list.end(); !it.isEqual(end); it.increment())
        action(it.deref());
}

rapidjson::Value CopiedText(const std::string& text, TextRoute::Allocator& allocator) {
    return rapidjson::Value(text.c_str(), allocator);  // up to a first zero byte
}

rapidjson::Value ValueAt(const char* buf, int len, const vxJson::Value& offset,
                         TextRoute::Allocator& allocator) {
    const std::int64_t at = offset.asInt();
    if (at < 0 || at > len) throw msgpack::insufficient_bytes("insufficient bytes");
    std::size_t taken;
    const msgpack::object_handle handle =
        Unpack(buf + at, static_cast<std::size_t>(len - at), taken);
    return ObjectToJson(handle.get(), allocator);
}

/// The type and name of an item and, unless it is a table, its value.
rapidjson::Value ElementOf(const vxJson::Value& item, const std::string& name,
                           const vxJson::Value& offsets, const char* buf, int len,
                           TextRoute::Allocator& allocator) {
    const int type = item["type"].asInt();
    const int index = item["index"].asInt();
    rapidjson::Value element(rapidjson::kObjectType);
    element.AddMember("type", type, allocator);
    element.AddMember("name", CopiedText(name, allocator), allocator);
    if (type != kTableType)
        element.AddMember("value", ValueAt(buf, len, offsets[index], allocator), allocator);
    return element;
}

/// The elements of a table's columns or attributes; a null `selection` becomes one of all names.
rapidjson::Value GetTableData(vxJson::Value& selection, const vxJson::Value& children,
                              const vxJson::Value& offsets, const char* buf, int len,
                              TextRoute::Allocator& allocator) {
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

rapidjson::Value* MemberOf(rapidjson::Value& value, const char* key) {
    if (!value.IsObject()) return nullptr;
    const auto member = value.FindMember(key);
    return member == value.MemberEnd() ? nullptr : &member->value;
}

std::string TextOf(rapidjson::Value& value, const char* key) {
    const rapidjson::Value* member = MemberOf(value, key);
    return member != nullptr && member->IsString() ? std::string(member->GetString())
                                                   : std::string();
}

void SetText(rapidjson::Value& value, const char* key, const std::string& text,
             TextRoute::Allocator& allocator) {
    rapidjson::Value* member = MemberOf(value, key);
    if (member != nullptr) member->SetString(text.c_str(), allocator);
}

int TypeOf(rapidjson::Value& item) {
    const rapidjson::Value* type = MemberOf(item, "type");
    return type != nullptr && type->IsInt() ? type->GetInt() : 0;
}

void RenameTable(const std::map<DDKey, DDKey>& inverse, const std::string& parserPath,
                 rapidjson::Value& item, TextRoute::Allocator& allocator) {
    const std::string tableName = TextOf(item, "name");
    rapidjson::Value* columns = MemberOf(item, "column");
    if (columns == nullptr || !columns->IsArray()) return;
    for (rapidjson::SizeType i = 0; i < columns->Size(); ++i) {
        rapidjson::Value& column = (*columns)[i];
        const auto hit = inverse.find(DDKey(parserPath, tableName + "." + TextOf(column, "name")));
        if (hit == inverse.end()) continue;
        const std::string wanted = hit->second.GetVarFullName();
        const std::size_t dot = wanted.find('.');
        if (dot == std::string::npos) continue;
        SetText(item, "name", wanted.substr(0, dot), allocator);
        SetText(column, "name", wanted.substr(dot + 1), allocator);
    }
}

}  // namespace

bool TextRoute::GetBinaryDataInfo(const std::string& blob, std::string& name, vxJson::Value& schema,
                                  int& offset) {
    const char* bytes = blob.data();
    std::size_t taken;
    if (Unpack(bytes, blob.size(), taken).get().as<std::int32_t>() != 1) return false;
    std::size_t at = taken;

    name = Unpack(bytes + at, blob.size() - at, taken).get().as<std::string>();  // str or bin
    at += taken;

    const msgpack::object_handle handle = Unpack(bytes + at, blob.size() - at, taken);
    std::stringstream stream;
    PrintObject(stream, handle.get());
    vxJson::Reader reader;
    reader.parse(stream, schema, true);
    offset = static_cast<std::int32_t>(static_cast<std::uint32_t>(at + taken));
    return true;
}

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

bool TextRoute::PostDataProcessing(const std::map<DDKey, DDKey>& mapping,
                                   const std::string& parserPath, rapidjson::Document& document,
                                   std::vector<std::string>& items) {
    std::map<DDKey, DDKey> inverse;
    for (const auto& entry : mapping) inverse[entry.second] = entry.first;
    if (!document.IsArray()) return true;

    Allocator& allocator = document.GetAllocator();
    for (rapidjson::SizeType i = 0; i < document.Size(); ++i) {
        rapidjson::Value& item = document[i];
        if (TypeOf(item) == kTableType) {
            RenameTable(inverse, parserPath, item, allocator);
        } else {
            const auto hit = inverse.find(DDKey(parserPath, TextOf(item, "name")));
            if (hit != inverse.end())
                SetText(item, "name", hit->second.GetVarFullName(), allocator);
        }
        rapidjson::StringBuffer buffer;
        rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
        item.Accept(writer);
        items.emplace_back(buffer.GetString());
    }
    return true;
}
