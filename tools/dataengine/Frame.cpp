#include "tools/dataengine/Frame.h"

#include <algorithm>
#include <climits>
#include <msgpack.hpp>
#include <optional>
#include <tuple>

#include "documents/RenderJson.h"
#include "structure/CDEStructureDataHelper.h"
#include "tools/dataengine/Files.h"

namespace tool {
namespace {

/// The position and the reason of broken bytes in a frame.
struct Broken {
    std::size_t position;  // counted from the start of the file
    const char* reason;
};

/// Skips one packed value.
struct Skipper : msgpack::null_visitor {
    void insufficient_bytes(std::size_t, std::size_t) { throw Broken{start, "is cut off"}; }
    void parse_error(std::size_t, std::size_t error) { throw Broken{error, "is not msgpack"}; }

    std::size_t start = 0;
};

/// Returns the position after the value that begins at `position` of the frame's file.
std::size_t Skip(const Frame& frame, const std::string& what, std::size_t position) {
    Skipper skipper;
    skipper.start = position;
    try {
        msgpack::parse(frame.bytes.data(), frame.bytes.size(), position, skipper);
    } catch (const Broken& broken) {
        throw Failure(frame.path,
                      what + ": byte " + std::to_string(broken.position) + ": " + broken.reason);
    }
    return position;
}

/// Calls GetBinaryDataInfo, whose result it returns. Throws Failure if the header is broken.
bool ReadHeader(Frame& frame) {
    try {
        return CDEStructureDataHelper::GetBinaryDataInfo(frame.bytes, frame.name, frame.schema,
                                                         frame.headerLength);
    } catch (const msgpack::unpack_error&) {
        std::size_t position = 0;
        for (const char* part : {"version", "name", "schema"})
            position = Skip(frame, part, position);
        throw;
    } catch (const msgpack::type_error&) {
        throw Failure(frame.path,
                      "is not a packed frame: the version is not an integer, or the name not text");
    }
}

std::optional<long long> IntegerOf(const vxJson::Value& value) {
    try {
        return value.isNull() ? std::nullopt : std::optional(value.asInt64());
    } catch (const vxJson::Error&) {
        return std::nullopt;
    }
}

/// An item that has a value, and the place of its offset in an array of offsets.
struct Place {
    Item item;
    long long index;
    std::optional<long long> child;  // the index in the array of a table

    bool operator<(const Place& other) const {
        return std::tie(index, child) < std::tie(other.index, other.child);
    }
};

long long IndexOf(const Item& item) {
    return IntegerOf((*item.schema)["index"]).value_or(0);
}

/// Returns the places of a table's columns and attributes, in the order of their index.
std::vector<Place> PlacesOf(const Item& table) {
    std::vector<Place> places;
    for (const char* list : {"column", "attributes"}) {
        for (const Item& child : ItemsOf((*table.schema)[list], table.path + "."))
            if (!child.IsTable()) places.push_back({child, IndexOf(table), IndexOf(child)});
    }
    std::stable_sort(places.begin(), places.end());
    return places;
}

/// Returns the places of all values in the order in which the writer writes the values.
std::vector<Place> AllPlaces(const Frame& frame) {
    std::vector<Place> places;
    for (const Item& item : ItemsOf(frame.schema)) {
        // The writer gives a frame without items this one, which has no value.
        if (item.path == "$" && frame.Payload().empty()) continue;
        if (!item.IsTable()) {
            places.push_back({item, IndexOf(item), std::nullopt});
            continue;
        }
        for (Place& place : PlacesOf(item)) places.push_back(std::move(place));
    }
    return places;
}

/// Returns the element of `list` at `index`; null if there is none.
const vxJson::Value& At(const vxJson::Value& list, long long index) {
    return list[index < list.size() ? static_cast<int>(index) : -1];
}

Offsets ReadOffsets(const Frame& frame, const std::string& path) {
    const vxJson::Value list = ReadJson(path);
    if (!list.isArray()) throw Failure(path, "is not an array of offsets");
    Offsets offsets;
    offsets.given = true;
    for (const Place& place : AllPlaces(frame)) {
        const vxJson::Value& entry = At(list, place.index);
        const auto offset = IntegerOf(place.child ? At(entry, *place.child) : entry);
        if (offset && *offset >= 0 && *offset <= INT_MAX)
            offsets.byItem[place.item.schema] = static_cast<int>(*offset);
    }
    return offsets;
}

Offsets FindOffsets(const Frame& frame, ErrorReporter& errors) {
    Offsets offsets;
    std::map<Place, int> found;  // items with the same index share one value
    const auto header = static_cast<std::size_t>(frame.headerLength);
    std::size_t position = header;
    try {
        for (const Place& place : AllPlaces(frame)) {
            auto value = found.find(place);
            if (value == found.end()) {
                const std::size_t end = Skip(frame, place.item.path, position);
                value = found.emplace(place, static_cast<int>(position - header)).first;
                position = end;
            }
            offsets.byItem[place.item.schema] = value->second;
        }
    } catch (const Failure& failure) {
        errors.Report(std::string(failure.what()) +
                      "; without --offsets, the values from here on are not found");
        return offsets;
    }
    if (position != frame.bytes.size())
        errors.Report(DisplayName(frame.path) + ": byte " + std::to_string(position) +
                      ": the last value ends before the file; give --offsets if values are wrong");
    return offsets;
}

}  // namespace

Frame ReadFrame(const std::string& path) {
    Frame frame;
    frame.path = path;
    frame.bytes = ReadFile(path);
    if (frame.bytes.empty()) throw Failure(path, "is empty");
    if (!ReadHeader(frame)) throw Failure(path, "has a version other than 1");
    if (!frame.schema.isArray()) throw Failure(path, "its schema is not an array");
    return frame;
}

std::vector<Item> ItemsOf(const vxJson::Value& list, const std::string& prefix) {
    std::vector<Item> items;
    if (!list.isArray()) return items;
    for (const vxJson::Value& item : list) {
        if (item["name"].isString()) items.push_back({&item, prefix + item["name"].asString()});
    }
    return items;
}

bool Item::IsTable() const {
    return IntegerOf((*schema)["type"]) == kTableType;
}

Offsets LocateValues(const Frame& frame, const std::string& path, ErrorReporter& errors) {
    return path.empty() ? FindOffsets(frame, errors) : ReadOffsets(frame, path);
}

std::size_t SizeOfValue(const Frame& frame, const Item& item, int offset) {
    const auto start =
        static_cast<std::size_t>(frame.headerLength) + static_cast<std::size_t>(offset);
    return Skip(frame, item.path, start) - start;
}

void DecodeValue(const Frame& frame, const Item& item, int offset, rapidjson::Value& list,
                 rapidjson::Document::AllocatorType& pool) {
    // Decoding a table whose only column is this value yields the item as the decoder prints it.
    vxJson::Value column;
    column["name"] = (*item.schema)["name"];
    column["type"] = (*item.schema)["type"];
    vxJson::Value table;
    table["name"] = "table";
    table["type"] = kTableType;
    table["column"].append(column);
    vxJson::Value schema;
    schema.append(table);
    vxJson::Value offsets;
    offsets[0][0] = offset;

    const std::string_view payload = frame.Payload();
    rapidjson::Document document(&pool);
    try {
        CDEStructureDataHelper::ParseBinaryDataToJson(
            payload.data(), static_cast<int>(payload.size()), schema, offsets, {}, document);
    } catch (const msgpack::unpack_error&) {
        SizeOfValue(frame, item, offset);  // throws with the byte
        throw;
    } catch (const vxJson::Error& error) {
        throw Failure(frame.path, item.path + ": " + error.what());
    }
    list.PushBack(document[0]["column"][0], pool);
}

std::string JsonText(const rapidjson::Value& value) {
    dataengine::detail::JsonBuffer buffer;
    dataengine::detail::JsonWriter writer(buffer);
    dataengine::detail::RenderJson(value, writer);
    return {buffer.GetString(), buffer.GetSize()};
}

}  // namespace tool
