#include "tools/dataengine/Frames.h"

#include <functional>
#include <map>
#include <sstream>

#include "structure/detail/MsgpackErrors.h"
#include "structure/detail/PackedBytes.h"
#include "structure/detail/PackedFormat.h"
#include "tools/dataengine/Failure.h"
#include "tools/dataengine/Files.h"
#include "tools/dataengine/Text.h"

namespace dataengine::tool {
namespace {

/// Returns what is known to begin as a file does.
const char* FormatOf(std::string_view bytes) {
    static constexpr std::pair<std::string_view, const char*> kFormats[] = {
        {"\x1f\x8b", " (gzip)"},
        {"PK\3\4", " (zip)"},
        {"\x28\xb5\x2f\xfd", " (zstd)"},
        {"\xfd"
         "7zXZ",
         " (xz)"},
        {"BZh", " (bzip2)"},
        {"{", " (JSON or text)"},
        {"[", " (JSON or text)"},
        {"<", " (XML or text)"},
        {"\x89PNG", " (PNG)"},
        {"\x7f"
         "ELF",
         " (ELF)"},
        {"%PDF", " (PDF)"}};
    for (const auto& [beginning, name] : kFormats)
        if (bytes.substr(0, beginning.size()) == beginning) return name;
    return IsPlain(bytes.substr(0, 8)) ? " (text)" : "";
}

[[noreturn]] void FailNoFrame(const std::string& path, std::string_view bytes) {
    std::string beginning;
    for (const char byte : bytes.substr(0, 2)) beginning += " 0x" + HexOf({&byte, 1});
    throw Failure(path, "not a packed frame: starts with" + beginning + FormatOf(bytes));
}

/// Throws Failure unless `bytes` begin with an integer and a name, as a frame of any version does.
void CheckBeginning(const std::string& path, std::string_view bytes) {
    if (bytes.empty()) throw Failure(path, "is empty");
    detail::PackedBytes packed(bytes.data(), bytes.size());
    try {
        const bool isInteger = packed.Head().kind == detail::PackedKind::kInteger;
        packed.Skip();
        if (isInteger && packed.Remaining() == 0) return;
        const detail::PackedKind kind = packed.Head().kind;
        if (isInteger && (kind == detail::PackedKind::kStr || kind == detail::PackedKind::kBin))
            return;
    } catch (const msgpack::unpack_error&) {
        // Reported below.
    }
    FailNoFrame(path, bytes);
}

std::optional<long long> IntegerOf(const vxJson::Value& value) {
    return value.isInteger() ? std::optional(value.asInt64()) : std::nullopt;
}

/// Returns the position of an item's value: its index, and its index in the table or -1.
std::pair<long long, long long> PlaceOf(const Item& item) {
    const long long index = IntegerOf((*item.schema)["index"]).value_or(0);
    if (item.table == nullptr) return {index, -1};
    return {IntegerOf((*item.table)["index"]).value_or(0), index};
}

/// Returns the element of `list` at `index`; null if there is none.
const vxJson::Value& At(const vxJson::Value& list, long long index) {
    return list[index >= 0 && index < list.size() ? static_cast<int>(index) : -1];
}

/// Returns the first element of `list` with the name `name`, or null.
const vxJson::Value* Find(const vxJson::Value& list, const std::string& name) {
    if (!list.isArray()) return nullptr;
    for (const vxJson::Value& item : list)
        if (item["name"].isString() && item["name"].asString() == name) return &item;
    return nullptr;
}

}  // namespace

void OpenFrame(PackedFrameReader& reader, const std::string& path, std::string_view bytes) {
    try {
        if (reader.Open(bytes)) {
            if (reader.Schema().isArray()) return;
            throw Failure(path, "its schema is not an array");
        }
    } catch (const msgpack::type_error&) {
        FailNoFrame(path, bytes);
    } catch (const msgpack::unpack_error& error) {
        CheckBeginning(path, bytes);
        throw Failure(path, error.what());
    } catch (const vxJson::Error& error) {
        throw Failure(path, error.what());
    }
    CheckBeginning(path, bytes);
    throw Failure(path, "has a version other than 1");
}

bool Item::HasValue() const {
    return IntegerOf((*schema)["type"]) != kTableType;
}

std::string Item::Path() const {
    const std::string name = (*schema)["name"].asString();
    return table == nullptr ? name : (*table)["name"].asString() + "." + name;
}

std::vector<Item> ItemsOf(const PackedFrameReader& reader) {
    std::vector<Item> items;
    for (const vxJson::Value& item : reader.Schema()) {
        const bool isFiller = item["name"] == vxJson::Value("$") && reader.Payload().empty();
        if (!item["name"].isString() || isFiller) continue;
        items.push_back({&item, nullptr, "leaf"});
        if (items.back().HasValue()) continue;
        items.back().role = "table";
        for (const auto& [list, role] :
             {std::pair("column", "column"), {"attributes", "attribute"}})
            for (const vxJson::Value& child : item[list])
                if (child["name"].isString()) items.push_back({&child, &item, role});
    }
    return items;
}

vxJson::Value ReadOffsets(const std::string& path) {
    vxJson::Value offsets = ReadJson(path);
    if (!offsets.isArray()) throw Failure(path, "is not an array of offsets");
    return offsets;
}

void SetOffsets(std::vector<Item>& items, const vxJson::Value& offsets) {
    for (Item& item : items) {
        const auto [index, child] = PlaceOf(item);
        const vxJson::Value& entry = At(offsets, index);
        const auto offset = IntegerOf(item.table == nullptr ? entry : At(entry, child));
        if (item.HasValue() && offset && *offset >= 0) item.offset = *offset;
    }
}

std::string FindOffsets(std::vector<Item>& items, const PackedFrameReader& reader) {
    std::map<std::pair<long long, long long>, std::vector<Item*>> places;
    for (Item& item : items)
        if (item.HasValue()) places[PlaceOf(item)].push_back(&item);
    const std::string_view payload = reader.Payload();
    detail::PackedBytes bytes(payload.data(), payload.size());
    for (const auto& [place, sharing] : places) {
        const auto offset = static_cast<std::size_t>(bytes.Next() - payload.data());
        try {
            bytes.Skip();
        } catch (const msgpack::unpack_error& error) {
            try {
                reader.FindOffsets();
            } catch (const msgpack::unpack_error& located) {
                return located.what();
            }
            return error.what();
        }
        for (Item* item : sharing) item->offset = offset;
    }
    return "";
}

namespace {

/// Adds a column or an attribute to the selection. Returns whether the table has it.
bool SelectChild(vxJson::Value& selection, const vxJson::Value& table, const std::string& name) {
    const char* const list = Find(table["column"], name) != nullptr       ? "column"
                             : Find(table["attributes"], name) != nullptr ? "attributes"
                                                                          : nullptr;
    if (list == nullptr) return false;
    const vxJson::Value marked = "$" + table["name"].asString();
    const vxJson::Value& last = At(selection, static_cast<long long>(selection.size()) - 1);
    if (last["table"] != marked || !last.isMember("column")) {
        vxJson::Value entry;
        entry["table"] = marked;
        for (const char* key : {"column", "attributes"})
            entry[key] = vxJson::Value(vxJson::arrayKind, false);
        selection.append(std::move(entry));
    }
    selection[static_cast<int>(selection.size()) - 1][list].append(name);
    return true;
}

/// Adds the item, column or attribute of a name. Returns whether the frame has it.
bool Select(vxJson::Value& selection, const vxJson::Value& schema, const std::string& name) {
    if (Find(schema, name) != nullptr) {
        vxJson::Value entry;
        entry["table"] = "$" + name;  // readers remove one '$'
        selection.append(std::move(entry));
        return true;
    }
    for (std::size_t dot = name.find('.'); dot != name.npos; dot = name.find('.', dot + 1)) {
        const vxJson::Value* const table = Find(schema, name.substr(0, dot));
        if (table != nullptr && IntegerOf((*table)["type"]) == kTableType &&
            SelectChild(selection, *table, name.substr(dot + 1)))
            return true;
    }
    return false;
}

/// Reads a JSON selection and checks its names.
vxJson::Value ReadSelection(const std::string& path, const vxJson::Value& schema,
                            const std::function<void(const std::string&)>& missing) {
    vxJson::Value selection = ReadJson(path);
    if (!selection.isArray() && !selection.isNull())
        throw Failure(path, "is neither an array nor null");
    try {
        for (const vxJson::Value& entry : std::as_const(selection)) {
            const std::string marked = (entry.isObject() ? entry["table"] : entry).asString();
            const std::string name(detail::WithoutMark(marked));
            const vxJson::Value* const item = Find(schema, name);
            if (item == nullptr) missing(name);
            for (const char* key : {"column", "attributes"})
                for (const vxJson::Value& child : entry[key])
                    if (item != nullptr && Find((*item)[key], child.asString()) == nullptr)
                        missing(name + "." + child.asString());
        }
    } catch (const vxJson::Error& error) {
        throw Failure(path, std::string("is not a selection (") + error.what() + ")");
    }
    return selection;
}

}  // namespace

vxJson::Value SelectionOf(const std::vector<std::string>& words, const vxJson::Value& schema,
                          std::vector<std::string>& errors) {
    vxJson::Value selection;
    const auto missing = [&](const std::string& name) {
        errors.push_back("has no item named \"" + name + "\"");
    };
    for (const std::string& word : words) {
        if (selection.isNull()) selection = vxJson::Value(vxJson::arrayKind, false);
        if (Select(selection, schema, word)) continue;
        if (words.size() == 1 && IsFile(word)) return ReadSelection(word, schema, missing);
        std::istringstream names(word);
        for (std::string name; std::getline(names, name, ',');)
            if (!Select(selection, schema, name)) missing(name);
        if (words.size() == 1 && errors.size() == 1 && selection.empty())
            errors.back() += ", and there is no such file";
    }
    return selection;
}

}  // namespace dataengine::tool
