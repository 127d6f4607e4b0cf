// Packs a frame from the text of unpack, from a JSON document of the decoder's form, from a CSV
// table that decode printed, or from a CSV sheet of these records, in this order:
//
//   unit,NAME                    the name of the frame
//   leaf,KIND,NAME,VALUE         any number
//   attribute,KIND,NAME,VALUE    of the table; any number
//   table,NAME                   if there is a table
//   KIND:NAME,KIND:NAME,...      the columns of the table
//   VALUE,VALUE,...              a row; any number
//
// KIND is text, integer, number, boolean or bytes. An empty cell is null.
#include <charconv>
#include <cmath>
#include <filesystem>
#include <functional>
#include <map>
#include <sstream>

#include "structure/PackedFrameWriter.h"
#include "structure/detail/PackedBytes.h"
#include "tools/dataengine/Commands.h"
#include "tools/dataengine/Csv.h"
#include "tools/dataengine/Exact.h"
#include "tools/dataengine/Failure.h"
#include "tools/dataengine/Files.h"
#include "tools/dataengine/Frames.h"

namespace dataengine::tool {
namespace {

using detail::PackedKind;
using Cell = std::optional<std::string>;

// 11 marks a table. The decoder copies all other type numbers unchanged.
const std::map<std::string, int> kTypeOfKind = {
    {"text", 1}, {"integer", 2}, {"number", 3}, {"boolean", 4}, {"bytes", 5}};
const std::string kAny = "any";  // of a column of --like with values of several kinds, or none

/// Returns `text` as a number; nothing unless the whole text is one.
template <typename Number>
std::optional<Number> Parse(const std::string& text) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end ? std::optional(number) : std::nullopt;
}

/// Returns the value of a cell. Throws Failure if it is not of this kind.
vxJson::Value ValueOf(const std::string& kind, const Cell& cell) {
    if (!cell) return {};
    if (kind == "text") return *cell;
    if (kind == "bytes") return vxJson::Value::Binary(*cell);
    const bool isAny = kind == kAny;
    if ((isAny || kind == "boolean") && (cell == "true" || cell == "false")) return cell == "true";
    if (isAny || kind == "integer") {
        if (const auto number = Parse<long long>(*cell)) return *number;
        if (const auto number = Parse<unsigned long long>(*cell)) return *number;
    }
    if (isAny || kind == "number") {
        const auto number = Parse<double>(*cell);
        if (number && std::isfinite(*number)) return *number;
    }
    if (!isAny) throw Failure("\"" + *cell + "\" is not of the kind " + kind);
    vxJson::Value value;
    std::istringstream stream(*cell);
    const bool isJson =
        cell->find_first_of("[{") == 0 && vxJson::Reader().parse(stream, value, false);
    return isJson ? value : vxJson::Value(*cell);
}

/// A leaf, a column or an attribute of the CSV.
struct Field {
    std::string kind;
    std::string name;
    int type;
    vxJson::Value value;
};

Field MakeField(const std::string& kind, const std::string& name) {
    const auto type = kTypeOfKind.find(kind);
    if (type == kTypeOfKind.end()) throw Failure("\"" + kind + "\" is not a kind of value");
    return {kind, name, type->second, {}};
}

/// The content of a frame, in its order.
struct Sheet {
    std::string unit;
    std::string table;
    bool hashSort = true;
    std::vector<std::string> hashColumns;
    std::vector<Field> leaves;
    std::vector<Field> columns;
    std::vector<Field> attributes;

    void Read(const std::vector<Cell>& cells) {
        const auto text = [&](std::size_t i) { return cells[i].value_or(""); };
        if (!columns.empty()) {
            ReadRow(cells);
        } else if (!table.empty()) {
            ReadColumns(cells);
        } else if (cells.size() == 2 && cells[0] == "unit") {
            unit = text(1);
        } else if (cells.size() == 2 && cells[0] == "table") {
            table = text(1);
        } else if (cells.size() == 4 && (cells[0] == "leaf" || cells[0] == "attribute")) {
            auto& fields = cells[0] == "leaf" ? leaves : attributes;
            fields.push_back(MakeField(text(1), text(2)));
            fields.back().value = ValueOf(text(1), cells[3]);
        } else {
            throw Failure("is not a unit, leaf, attribute or table");
        }
    }

    void ReadColumns(const std::vector<Cell>& cells) {
        for (const Cell& cell : cells) {
            const std::string text = cell.value_or("");
            const std::size_t colon = text.find(':');
            if (colon == text.npos) throw Failure("column \"" + text + "\" is not kind:name");
            columns.push_back(MakeField(text.substr(0, colon), text.substr(colon + 1)));
            columns.back().value = vxJson::Value(vxJson::arrayKind, false);
        }
        hashColumns = {columns.front().name};
    }

    void ReadRow(const std::vector<Cell>& cells) {
        if (cells.size() != columns.size())
            throw Failure("has " + std::to_string(cells.size()) + " cells for " +
                          std::to_string(columns.size()) + " columns");
        for (std::size_t i = 0; i < cells.size(); ++i)
            columns[i].value.append(ValueOf(columns[i].kind, cells[i]));
    }

    void AddTo(PackedFrameWriter& writer) const {
        for (const Field& leaf : leaves) writer.AddLeaf(leaf.name, leaf.type, leaf.value);
        if (columns.empty()) return;
        PackedFrameWriter::Table added = writer.AddTable(table, hashSort, hashColumns);
        for (const Field& column : columns) added.AddColumn(column.name, column.type, column.value);
        for (const Field& attribute : attributes)
            added.AddAttribute(attribute.name, attribute.type, attribute.value);
    }
};

/// Runs `read` with each record. Errors name its line.
template <typename Records, typename Read>
void ForEachRecord(const std::string& path, const Records& records, const Read& read) {
    for (const CsvRecord& record : records) {
        try {
            read(record.cells);
        } catch (const Failure& failure) {
            throw Failure(path, "line " + std::to_string(record.line) + ": " + failure.what());
        }
    }
}

Sheet ReadSheet(const std::string& path, const std::string& text) {
    Sheet sheet;
    ForEachRecord(path, ParseCsv(path, text, true),
                  [&](const std::vector<Cell>& cells) { sheet.Read(cells); });
    if (!sheet.table.empty() && sheet.columns.empty())
        throw Failure(path, "the table has no columns");
    if (sheet.leaves.empty() && sheet.columns.empty())
        throw Failure(path, "has neither a leaf nor a table");
    if (sheet.columns.empty() && !sheet.attributes.empty())
        throw Failure(path, "has an attribute and no table");
    return sheet;
}

/// Returns the kind of the values of a packed column.
std::string KindOf(std::string_view packed) {
    static const std::map<PackedKind, std::string> kKinds = {
        {PackedKind::kStr, "text"},        {PackedKind::kInteger, "integer"},
        {PackedKind::kFloat32, "number"},  {PackedKind::kFloat64, "number"},
        {PackedKind::kBoolean, "boolean"}, {PackedKind::kBin, "bytes"}};
    detail::PackedBytes bytes(packed.data(), packed.size());
    if (bytes.Head().kind != PackedKind::kArray) return kAny;
    std::string kind;
    for (std::uint64_t rest = bytes.TakeLength(bytes.Head()); rest > 0; --rest, bytes.Skip()) {
        const auto found = kKinds.find(bytes.Head().kind);
        if (bytes.Head().kind == PackedKind::kNil) continue;
        if (found == kKinds.end() || (!kind.empty() && kind != found->second)) return kAny;
        kind = found->second;
    }
    return kind.empty() ? kAny : kind;
}

/// Sets unit, table and columns to those of the frame `like`, for a CSV with the header `names`:
/// those of the first table that has all columns.
Sheet SheetLike(const std::string& like, const std::vector<Cell>& names) {
    const std::string bytes = ReadFile(like);
    PackedFrameReader reader;
    OpenFrame(reader, like, bytes);
    std::vector<Item> items = ItemsOf(reader);
    FindOffsets(items, reader);
    Sheet sheet;
    sheet.unit = reader.Name();
    for (const vxJson::Value& table : reader.Schema()) {
        std::map<std::string, const Item*> columns;
        for (const Item& item : items)
            if (item.table == &table && item.role == std::string("column"))
                columns.emplace((*item.schema)["name"].asString(), &item);
        sheet.columns.clear();
        for (const Cell& name : names) {
            const auto found = columns.find(name.value_or(""));
            if (found == columns.end() || !found->second->offset) break;
            sheet.columns.push_back({KindOf(reader.Payload().substr(*found->second->offset)),
                                     found->first, (*found->second->schema)["type"].asInt(),
                                     vxJson::Value(vxJson::arrayKind, false)});
        }
        if (sheet.columns.size() != names.size()) continue;
        sheet.table = table["name"].asString();
        sheet.hashSort = table["hashSort"].isBool() && table["hashSort"].asBool();
        for (const vxJson::Value& column : table["hashColumns"])
            if (column.isString()) sheet.hashColumns.push_back(column.asString());
        return sheet;
    }
    throw Failure(like, "has no table with the columns of the CSV");
}

Sheet ReadTable(const std::string& path, const std::string& text, const std::string& like) {
    std::vector<CsvRecord> records = ParseCsv(path, text, false);
    Sheet sheet = SheetLike(like, records.front().cells);
    records.erase(records.begin());
    ForEachRecord(path, records, [&](const std::vector<Cell>& cells) { sheet.ReadRow(cells); });
    return sheet;
}

/// A frame and its offsets.
struct Packed {
    std::string frame;
    vxJson::Value offsets;
};

Packed PackText(const rapidjson::Document& text) {
    Packed packed;
    for (const char* key : {"version", "name", "schema"}) {
        if (!text.HasMember(key)) throw vxJson::Error(std::string("has no \"") + key + "\"");
        PackExact(text[key], packed.frame);
    }
    if (!text.HasMember("payload") || !text["payload"].IsArray())
        throw vxJson::Error("has no \"payload\" of values");
    for (const rapidjson::Value& value : text["payload"].GetArray()) PackExact(value, packed.frame);
    return packed;
}

Packed PackWith(const Options& options, const std::string& unit,
                const std::function<void(PackedFrameWriter&)>& add) {
    const std::string& name = options.name.empty() ? unit : options.name;
    if (name.empty()) throw vxJson::Error("has no unit, and there is no --name");
    PackedFrameWriter writer(name);
    add(writer);
    return {writer.Frame(), options.offsets.empty() ? vxJson::Value() : writer.Offsets()};
}

Packed PackInput(const Options& options, const std::string& path, const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    const char begin = first == text.npos ? '\0' : text[first];
    if (begin != '[' && begin != '{') {
        const Sheet sheet =
            options.like.empty() ? ReadSheet(path, text) : ReadTable(path, text, options.like);
        return PackWith(options, sheet.unit,
                        [&](PackedFrameWriter& writer) { sheet.AddTo(writer); });
    }
    const rapidjson::Document document = ParseJson(path, text);
    if (document.IsObject() && document.HasMember("version")) return PackText(document);
    if (options.name.empty() && path == kStandard)
        throw UsageError("a document from standard input needs a --name");
    return PackWith(options, std::filesystem::path(path).stem(),
                    [&](PackedFrameWriter& writer) { writer.AddItems(document); });
}

}  // namespace

int Pack(const Options& options) {
    const std::string& path = options.input;
    CheckPaths({path, options.like}, {options.output, options.offsets});
    const std::string text = ReadFile(path);
    if (text.empty()) throw Failure(path, "is empty");
    try {
        Packed packed = PackInput(options, path, text);
        Output frame(options.output, Content::kBinary);
        frame.Write(packed.frame);
        if (options.offsets.empty()) {
            Output::Complete(frame);
            return 0;
        }
        if (packed.offsets.isNull()) {
            PackedFrameReader reader;
            OpenFrame(reader, path, packed.frame);
            packed.offsets = reader.FindOffsets();
        }
        Output offsets(options.offsets);
        offsets.Write(packed.offsets.toString(false) + "\n");
        Output::Complete(frame, offsets);
    } catch (const vxJson::Error& error) {
        throw Failure(path, error.what());
    }
    return 0;
}

}  // namespace dataengine::tool
