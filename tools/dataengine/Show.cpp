// Prints a frame exactly: its header and schema as a tree with the kind and the beginning of each
// value, or all of it as text that pack reads.
#include "structure/CDEStructureDataHelper.h"
#include "structure/detail/MsgpackErrors.h"
#include "tools/dataengine/Exact.h"
#include "tools/dataengine/Frames.h"
#include "tools/dataengine/Table.h"

namespace dataengine::tool {
namespace {

using detail::PackedBytes;

/// Returns whether a value is null in documents.
bool DecodesToNull(std::string_view bytes) {
    vxJson::Value schema, offsets;
    schema[0]["name"] = "value";
    offsets[0] = 0;
    rapidjson::Document document;
    CDEStructureDataHelper::ParseBinaryDataToJson(bytes.data(), static_cast<int>(bytes.size()),
                                                  schema, offsets, {}, document);
    return document[0]["value"].IsNull();
}

/// Returns the size, the kind and the beginning of a value.
std::vector<std::string> Describe(std::string_view value) {
    static constexpr const char* kKinds[] = {"",    "nil", "bool", "int",   "float32", "float64",
                                             "str", "bin", "ext",  "array", "map"};
    constexpr std::size_t kLongest = 60;
    PackedBytes bytes(value.data(), value.size());
    const detail::PackedKind kind = bytes.Head().kind;
    Exact exact = ReadExact(bytes);
    if (exact.nullReason.empty() && kind != detail::PackedKind::kNil && DecodesToNull(value))
        exact.nullReason = "a bin that is not JSON text";
    const std::string null =
        exact.nullReason.empty() ? "" : "null in documents (" + exact.nullReason + "): ";
    return {std::to_string(value.size()), kKinds[static_cast<std::size_t>(kind)],
            null + Cut(Printable(exact.text, Content::kJson), kLongest)};
}

/// Returns an entry of a schema as text; an entry that should be a number may be of any kind.
std::string EntryText(const vxJson::Value& entry) {
    return entry.isNull() ? "" : entry.toString(false);
}

}  // namespace

void Show(const Options& options, Output& output) {
    Frame frame(options.input, options.offsets);
    const std::vector<Item>& items = frame.items;
    std::vector<std::string> errors;
    if (!frame.error.empty()) errors.push_back(frame.error);
    Rows rows = {{"item", "role", "type", "index", "offset", "size", "kind", "value"}};
    for (std::size_t i = 0; i < items.size(); ++i) {
        const Item& item = items[i];
        const vxJson::Value& schema = *item.schema;
        const bool isLast = i + 1 == items.size() || items[i + 1].table == nullptr;
        const std::string branch = item.table == nullptr ? "" : isLast ? "└─ " : "├─ ";
        std::vector<std::string> row = {branch + item.Name(), item.role, EntryText(schema["type"]),
                                        EntryText(schema["index"])};
        if (item.role == "table")
            row.insert(row.end(), {"", "", "",
                                   "hashSort " + schema["hashSort"].toString(false) +
                                       ", hashColumns " + schema["hashColumns"].toString(false)});
        try {
            if (item.offset) row.push_back(std::to_string(*item.offset));
            if (item.offset)
                for (std::string& text : Describe(frame.Value(item)))
                    row.push_back(std::move(text));
        } catch (const std::runtime_error& error) {
            errors.push_back(item.Path() + ": " + error.what());
        }
        row.resize(8);
        rows.push_back(std::move(row));
    }
    output.content = Content::kSafe;
    output.text += "name     " + Printable(frame.reader.Name()) + "\nheader   " +
                   std::to_string(frame.reader.HeaderLength()) + " bytes\npayload  " +
                   std::to_string(frame.reader.Payload().size()) + " bytes\n\n";
    DrawTable(rows, Screen(options), output);
    for (const std::string& error : errors) output.Report(Failure(frame.path, error).what());
}

void Unpack(const Options& options, Output& output) {
    const std::string& path = options.input;
    const std::string bytes = ReadFile(path);
    PackedFrameReader reader;
    OpenFrame(reader, path, bytes);

    Buffer& text = output.text;
    PackedBytes packed(bytes.data(), bytes.size());
    text += "{\"version\":" + ReadExact(packed).text;
    text += ",\n\"name\":" + ReadExact(packed).text + ",\n\"schema\":[";
    const std::uint64_t items = packed.TakeLength(packed.Head());
    for (std::uint64_t i = 0; i < items; ++i, output.Check())
        text += (i == 0 ? "\n" : ",\n") + ReadExact(packed).text;
    text += "],\n\"payload\":[";
    std::string error;
    for (const char* separator = "\n"; packed.Remaining() > 0; separator = ",\n", output.Check()) {
        const PackedBytes begin = packed;
        try {
            text += separator + ReadExact(packed).text;
        } catch (const msgpack::unpack_error&) {
            text += separator + RawText({begin.Next(), begin.Remaining()});
            error = "byte " + std::to_string(begin.Next() - bytes.data()) +
                    ": is not a packed value; kept as \"$raw\"";
            break;
        }
    }
    text += "]}\n";
    if (!error.empty()) output.Report(Failure(path, error).what());
}

}  // namespace dataengine::tool
