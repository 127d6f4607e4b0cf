#include "tools/dataengine/Frames.h"

#include <algorithm>
#include <climits>
#include <filesystem>
#include <map>
#include <sstream>

#include "structure/detail/MsgpackErrors.h"
#include "structure/detail/PackedBytes.h"
#include "structure/detail/PackedFormat.h"
#include "tools/dataengine/Files.h"

namespace dataengine::tool {
namespace {

using detail::PackedBytes;
using detail::PackedKind;

/// Returns whether `bytes` begin with an integer and a name, as a frame of any version does.
bool BeginsFrame(std::string_view bytes) {
    PackedBytes packed(bytes.data(), bytes.size());
    if (packed.PeekHead().kind != PackedKind::kInteger) return false;
    if (packed.PeekHead().size >= bytes.size()) return true;
    packed.Skip();
    const PackedKind kind = packed.PeekHead().kind;
    return kind == PackedKind::kStr || kind == PackedKind::kBin;
}

std::string DescribeBeginning(std::string_view bytes) {
    static const std::map<std::string, const char*> kFormats = {
        {"1f8b", " (gzip)"},  {"504b", " (zip)"}, {"28b5", " (zstd)"}, {"fd37", " (xz)"},
        {"425a", " (bzip2)"}, {"8950", " (PNG)"}, {"7f45", " (ELF)"}};
    std::string text = "not a packed frame: starts with";
    for (const char byte : bytes.substr(0, 2)) text += " 0x" + HexOf({&byte, 1});
    const auto known = kFormats.find(HexOf(bytes.substr(0, 2)));
    return text + (known != kFormats.end()       ? known->second
                   : IsPlain(bytes.substr(0, 8)) ? " (text)"
                                                 : "");
}

long long IntegerOf(const vxJson::Value& value, long long otherwise) {
    return value.isInteger() ? value.asInt64() : otherwise;
}

/// Returns the position of an item's value: its index, and its index in the table or -1.
std::pair<long long, long long> PositionOf(const Item& item) {
    const long long index = IntegerOf((*item.schema)["index"], 0);
    if (item.table == nullptr) return {index, -1};
    return {IntegerOf((*item.table->schema)["index"], 0), index};
}

/// Returns the element of `list` at `index`; null if there is none.
const vxJson::Value& At(const vxJson::Value& list, long long index) {
    return list[index >= 0 && index < list.size() ? static_cast<int>(index) : -1];
}

}  // namespace

void OpenFrame(PackedFrameReader& reader, const std::string& path, std::string_view bytes) {
    if (bytes.empty()) throw Failure(path, "is empty");
    std::string error = "has a version other than 1";
    try {
        if (reader.Open(bytes)) {
            if (reader.Schema().isArray()) return;
            error = "its schema is not an array";
        }
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& exception) {
        error = exception.what();
    }
    throw Failure(path, BeginsFrame(bytes) ? error : DescribeBeginning(bytes));
}

bool Item::HasValue() const {
    return IntegerOf((*schema)["type"], 0) != kTableType;
}

std::vector<Item> ItemsOf(const PackedFrameReader& reader) {
    std::size_t count = 0;
    for (const vxJson::Value& item : reader.Schema())
        count += std::size_t{1} + item["column"].size() + item["attributes"].size();
    std::vector<Item> items;
    items.reserve(count);  // children refer to their table
    for (const vxJson::Value& item : reader.Schema()) {
        const bool isFiller = item["name"] == vxJson::Value("$") && reader.Payload().empty();
        if (!item["name"].isString() || isFiller) continue;
        items.push_back({&item, nullptr, "leaf"});
        if (items.back().HasValue()) continue;
        items.back().role = "table";
        const Item* const table = &items.back();
        for (const auto& [list, role] :
             {std::pair("column", "column"), {"attributes", "attribute"}})
            for (const vxJson::Value& child : item[list])
                if (child["name"].isString()) items.push_back({&child, table, role});
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
        const auto [index, child] = PositionOf(item);
        const vxJson::Value& entry = At(offsets, index);
        const long long offset = IntegerOf(item.table == nullptr ? entry : At(entry, child), -1);
        if (item.HasValue() && offset >= 0 && offset <= INT_MAX) item.offset = offset;
    }
}

Frame::Frame(const std::string& file, const std::string& offsets)
    : path(file), bytes(ReadFile(file)) {
    OpenFrame(reader, path, bytes);
    items = ItemsOf(reader);
    budget_ = 4 * reader.Payload().size();
    offsets.empty() ? FindOffsets() : SetOffsets(items, ReadOffsets(offsets));
}

void Frame::FindOffsets() {
    std::map<std::pair<long long, long long>, std::vector<Item*>> positions;
    for (Item& item : items)
        if (item.HasValue()) positions[PositionOf(item)].push_back(&item);
    const std::string_view payload = reader.Payload();
    PackedBytes packed(payload.data(), payload.size());
    for (const auto& [position, sharing] : positions) {
        const auto offset = static_cast<std::size_t>(packed.Next() - payload.data());
        try {
            packed.Skip();
        } catch (const msgpack::unpack_error& broken) {
            error = broken.what();
            break;
        }
        for (Item* item : sharing) item->offset = offset;
    }
    try {
        if (!error.empty()) reader.FindOffsets();
    } catch (const std::exception& located) {
        error = located.what();
    }
    if (error.empty() && packed.Remaining() > 0) error = DescribeRest(bytes.size(), packed);
}

std::string DescribeRest(std::size_t size, const detail::PackedBytes& rest) {
    return "byte " + std::to_string(size - rest.Remaining()) +
           ": the last value ends before the frame; use --offsets if values are wrong";
}

std::string_view Frame::Value(const Item& item) {
    const std::string_view payload = reader.Payload();
    const std::string_view rest = payload.substr(std::min(*item.offset, payload.size()));
    PackedBytes packed(rest.data(), rest.size());
    packed.Skip();
    const std::size_t size = rest.size() - packed.Remaining();
    if (size > budget_) throw Failure("the values overlap too often to show this one");
    budget_ -= size;
    return rest.substr(0, size);
}

namespace {

/// The selection of the items of a frame by name.
class Selecting {
  public:
    Selecting(const PackedFrameReader& reader, std::vector<std::string>& errors)
        : items_(ItemsOf(reader)), errors_(errors) {
        for (const Item& item : items_) byName_.emplace(std::pair(item.table, item.Name()), &item);
    }

    /// Returns the first item of this name, or of this table and name, or null.
    const Item* Find(const std::string& name) const {
        const Item* found = FindIn(nullptr, name);
        for (std::size_t dot = name.find('.'); found == nullptr && dot != name.npos;
             dot = name.find('.', dot + 1)) {
            const Item* const table = FindIn(nullptr, name.substr(0, dot));
            if (table != nullptr) found = FindIn(table, name.substr(dot + 1));
        }
        return found;
    }
    const Item* Require(const std::string& name) {
        const Item* const found = Find(name);
        if (found == nullptr) errors_.push_back("has no item named \"" + name + "\"");
        return found;
    }

    /// Adds the item, column or attribute of a name.
    void Add(const std::string& name) {
        const Item* const found = Require(name);
        if (found == nullptr) return;
        const Item& item = *found;
        const std::string table = item.table == nullptr ? name : item.table->Name();
        const vxJson::Value marked = "$" + table;  // readers remove one '$'
        if (item.table == nullptr || selection.empty() || !Last().isMember("column") ||
            Last()["table"] != marked) {
            selection.append(vxJson::Value());
            Last()["table"] = marked;
        }
        if (item.table == nullptr) return;
        for (const char* list : {"column", "attributes"})
            if (Last()[list].isNull()) Last()[list] = vxJson::Value(vxJson::arrayKind, false);
        Last()[item.role == "column" ? "column" : "attributes"].append(item.Name());
    }

    /// Checks the names of a JSON selection.
    void Check(const vxJson::Value& entries) {
        for (const vxJson::Value& entry : entries) {
            const std::string marked = (entry.isObject() ? entry["table"] : entry).asString();
            const std::string name(detail::WithoutMark(marked));
            const Item* const item = Require(name);
            for (const char* list : {"column", "attributes"})
                for (const vxJson::Value& child : entry[list])
                    if (item != nullptr) Require(name + "." + child.asString());
        }
    }

    vxJson::Value selection = vxJson::Value(vxJson::arrayKind, false);

  private:
    const Item* FindIn(const Item* table, const std::string& name) const {
        const auto found = byName_.find({table, name});
        return found == byName_.end() ? nullptr : found->second;
    }
    vxJson::Value& Last() { return selection[static_cast<int>(selection.size()) - 1]; }

    std::vector<Item> items_;
    std::vector<std::string>& errors_;
    std::map<std::pair<const Item*, std::string>, const Item*> byName_;
};

}  // namespace

vxJson::Value SelectionOf(const std::vector<std::string>& words, const PackedFrameReader& reader,
                          std::vector<std::string>& errors) {
    Selecting selecting(reader, errors);
    const std::string& path = words.front();
    if (words.size() == 1 && selecting.Find(path) == nullptr && std::filesystem::exists(path)) {
        vxJson::Value selection = ReadJson(path);
        if (!selection.isArray() && !selection.isNull())
            throw Failure(path, "is neither an array nor null");
        try {
            selecting.Check(selection);
        } catch (const vxJson::Error& error) {
            throw Failure(path, std::string("is not a selection (") + error.what() + ")");
        }
        return selection;
    }
    for (const std::string& word : words) {
        std::istringstream names(word);
        for (std::string name;
             std::getline(names, name, selecting.Find(word) == nullptr ? ',' : '\0');)
            selecting.Add(name);
    }
    if (words.size() == 1 && errors.size() == 1 && selecting.selection.empty())
        errors.back() += ", and there is no such file";
    return selecting.selection;
}

}  // namespace dataengine::tool
