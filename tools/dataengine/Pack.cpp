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
#include <map>
#include <set>
#include <sstream>

#include "structure/PackedFrameWriter.h"
#include "structure/detail/PackedFormat.h"
#include "tools/dataengine/Commands.h"
#include "tools/dataengine/Exact.h"
#include "tools/dataengine/Frames.h"

namespace dataengine::tool {
namespace {

using detail::PackedKind;

/// A cell of a CSV file. An empty one is null; an empty string is a pair of quotation marks.
using Cell = std::optional<std::string>;

/// A CSV record and the number of its first line, counted from 1.
struct CsvRecord {
    int line;
    std::vector<Cell> cells;
};

/// Reads the record at `at` with its line break, and sets `at` and `line` to the next one. A cell
/// in quotation marks may contain commas, line breaks, and quotation marks written twice. Returns
/// nothing if a quotation mark is not closed.
std::optional<CsvRecord> ReadRecord(const std::string& text, std::size_t& at, int& line) {
    CsvRecord record{line, {std::nullopt}};
    bool isQuoted = false;
    for (; at < text.size(); ++at) {
        const char c = text[at], next = text[at + 1];
        if (c == '\n') ++line;
        Cell& cell = record.cells.back();
        if (c == '"' && !(isQuoted && next == '"')) {
            isQuoted = !isQuoted;
            if (!cell) cell.emplace();
        } else if (isQuoted) {
            if (c == '"') ++at;  // a quotation mark is written twice
            *cell += c;
        } else if (c == ',') {
            record.cells.emplace_back();
        } else if (c == '\n') {
            ++at;
            break;
        } else if (c != '\r' || next != '\n') {
            if (!cell) cell.emplace();
            *cell += c;
        }
    }
    return isQuoted ? std::nullopt : std::optional(record);
}

/// Runs `read` with the cells of each record. Errors name its line. If `hasComments`, empty lines
/// and lines that begin with '#' are skipped.
template <typename Read>
void ForEachRecord(const std::string& path, const std::string& text, bool hasComments,
                   const Read& read) {
    int line = 1;
    for (std::size_t at = 0; at < text.size();) {
        if (hasComments && (text[at] == '#' || text[at] == '\n')) {
            at = std::min(text.find('\n', at), text.size() - 1) + 1;
            ++line;
            continue;
        }
        const int first = line;
        const auto record = ReadRecord(text, at, line);
        try {
            if (!record) throw Failure("a quotation mark is not closed");
            read(record->cells);
        } catch (const Failure& failure) {
            throw Failure(path, "line " + std::to_string(first) + ": " + failure.what());
        }
    }
}

/// The kinds that the values of a column may have; any if there are none.
using Kinds = std::set<PackedKind>;

struct NamedKind {
    const char* name;
    PackedKind kind;
};
constexpr NamedKind kKinds[] = {{"text", PackedKind::kStr},
                                {"integer", PackedKind::kInteger},
                                {"number", PackedKind::kFloat64},
                                {"boolean", PackedKind::kBoolean},
                                {"bytes", PackedKind::kBin}};

/// Returns `text` as a number; nothing unless the whole text is one.
template <typename Number>
std::optional<Number> Parse(const std::string& text) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end ? std::optional(number) : std::nullopt;
}

/// Returns the value of a cell. Throws Failure if it is not of these kinds.
vxJson::Value ValueOf(const Kinds& kinds, const Cell& cell) {
    if (!cell) return {};
    const auto has = [&](PackedKind kind) { return kinds.empty() || kinds.count(kind) != 0; };
    if (has(PackedKind::kBoolean) && (cell == "true" || cell == "false")) return cell == "true";
    if (has(PackedKind::kInteger)) {
        if (const auto number = Parse<long long>(*cell)) return *number;
        if (const auto number = Parse<unsigned long long>(*cell)) return *number;
    }
    if (has(PackedKind::kFloat64)) {
        const auto number = Parse<double>(*cell);
        if (number && std::isfinite(*number)) return *number;
    }
    vxJson::Value value;
    std::istringstream stream(*cell);
    if ((has(PackedKind::kArray) || has(PackedKind::kMap)) && cell->find_first_of("[{") == 0 &&
        vxJson::Reader().parse(stream, value, false))
        return value;
    if (has(PackedKind::kStr)) return *cell;
    if (has(PackedKind::kBin)) return vxJson::Value::Binary(*cell);
    std::string names;
    for (const auto& [name, kind] : kKinds)
        if (has(kind)) names += (names.empty() ? "" : " or ") + std::string(name);
    throw Failure("\"" + *cell + "\" is not of the kind " + names);
}

/// A leaf, a column or an attribute of a CSV file.
struct Field {
    std::string name;
    int type;
    Kinds kinds;
    vxJson::Value value;
};

Field MakeField(const std::string& kind, const std::string& name, vxJson::Value value) {
    int type = 0;  // the decoder copies all numbers unchanged but 11, which marks a table
    for (const auto& [known, packed] : kKinds)
        if (++type; kind == known) return {name, type, {packed}, std::move(value)};
    throw Failure("\"" + kind + "\" is not a kind of value");
}

void AppendRow(std::vector<Field>& columns, const std::vector<Cell>& cells) {
    if (cells.size() != columns.size())
        throw Failure("has " + std::to_string(cells.size()) + " cells for " +
                      std::to_string(columns.size()) + " columns");
    for (std::size_t i = 0; i < cells.size(); ++i)
        columns[i].value.append(ValueOf(columns[i].kinds, cells[i]));
}

/// The content of a sheet.
struct Sheet {
    std::string unit;
    std::string table;
    std::vector<Field> leaves;
    std::vector<Field> columns;
    std::vector<Field> attributes;

    void Read(const std::vector<Cell>& cells) {
        const auto text = [&](std::size_t i) { return cells[i].value_or(""); };
        if (!columns.empty()) {
            AppendRow(columns, cells);
        } else if (!table.empty()) {
            for (const Cell& cell : cells) AddColumn(cell.value_or(""));
        } else if (cells.size() == 2 && cells[0] == "unit") {
            unit = text(1);
        } else if (cells.size() == 2 && cells[0] == "table") {
            table = text(1);
        } else if (cells.size() == 4 && (cells[0] == "leaf" || cells[0] == "attribute")) {
            Field field = MakeField(text(1), text(2), {});
            field.value = ValueOf(field.kinds, cells[3]);
            (cells[0] == "leaf" ? leaves : attributes).push_back(std::move(field));
        } else {
            throw Failure("is not a unit, leaf, attribute or table");
        }
    }

    void AddColumn(const std::string& text) {
        const std::size_t colon = text.find(':');
        if (colon == text.npos) throw Failure("column \"" + text + "\" is not kind:name");
        columns.push_back(MakeField(text.substr(0, colon), text.substr(colon + 1),
                                    vxJson::Value(vxJson::arrayKind, false)));
    }

    void AddTo(PackedFrameWriter& writer) const {
        for (const Field& leaf : leaves) writer.AddLeaf(leaf.name, leaf.type, leaf.value);
        if (columns.empty()) return;
        PackedFrameWriter::Table added = writer.AddTable(table, true, {columns.front().name});
        for (const Field& column : columns) added.AddColumn(column.name, column.type, column.value);
        for (const Field& attribute : attributes)
            added.AddAttribute(attribute.name, attribute.type, attribute.value);
    }
};

Sheet ReadSheet(const std::string& path, const std::string& text) {
    Sheet sheet;
    ForEachRecord(path, text, true, [&](const std::vector<Cell>& cells) { sheet.Read(cells); });
    if (!sheet.table.empty() && sheet.columns.empty())
        throw Failure(path, "the table has no columns");
    if (sheet.leaves.empty() && sheet.columns.empty())
        throw Failure(path, "has neither a leaf nor a table");
    if (sheet.columns.empty() && !sheet.attributes.empty())
        throw Failure(path, "has an attribute and no table");
    return sheet;
}

std::string PackValue(const vxJson::Value& value) {
    PackedFrameWriter writer("");
    writer.AddLeaf("", 0, value);
    return writer.Frame().substr(static_cast<std::size_t>(writer.HeaderLength()));
}

/// A frame with the rows of a CSV table in place of its own. Columns that the CSV does not have are
/// left out; everything else is kept byte for byte.
class Likeness {
  public:
    explicit Likeness(const std::string& path) : frame_(path, "") {
        if (!frame_.error.empty()) throw Failure(path, frame_.error);
    }

    void Read(const std::vector<Cell>& cells) {
        columns_.empty() ? SetColumns(cells) : AppendRow(columns_, cells);
    }

    std::string Pack(const std::string& name) {
        std::map<std::size_t, std::string> values;  // by offset
        for (std::size_t i = 0; i < columns_.size(); ++i)
            values[*items_[i]->offset] = PackValue(columns_[i].value);
        for (const Item& item : frame_.items)
            if (item.offset && !IsLeftOut(item)) values.emplace(*item.offset, frame_.Value(item));
        std::string frame =
            PackValue(1) + PackValue(name.empty() ? frame_.reader.Name() : name) + Schema();
        for (const auto& [offset, value] : values) frame += value;
        return frame;
    }

  private:
    /// Takes the first table that has all columns; of several of one name, the first first.
    void SetColumns(const std::vector<Cell>& names) {
        std::map<std::string, std::vector<const Item*>> byName;
        for (std::size_t i = frame_.items.size(); i-- > 0;) {
            const Item* const item = &frame_.items[i];
            const std::string own = item->Name();  // documents have it up to a zero byte
            if (item->role == "column" && item->offset)
                byName[std::string(detail::UpToZero(own))].push_back(item);
            if (item->table != nullptr) continue;
            std::vector<const Item*> found;
            for (const Cell& name : names) {
                std::vector<const Item*>& same = byName[name.value_or("")];
                if (same.empty()) break;
                found.push_back(same.back());
                same.pop_back();
            }
            if (found.size() == names.size()) items_ = found;
            byName.clear();
        }
        if (items_.empty()) throw Failure(frame_.path, "has no table with the columns of the CSV");
        for (const Item* item : items_)
            columns_.push_back(
                {item->Name(), 0, KindsOf(*item), vxJson::Value(vxJson::arrayKind, false)});
    }

    Kinds KindsOf(const Item& item) {
        Kinds kinds;
        const std::string_view value = frame_.Value(item);
        detail::PackedBytes bytes(value.data(), value.size());
        if (bytes.Head().kind != PackedKind::kArray) return {};
        for (std::uint64_t rest = bytes.TakeLength(bytes.Head()); rest > 0; --rest, bytes.Skip())
            kinds.insert(bytes.Head().kind);
        kinds.erase(PackedKind::kNil);
        if (kinds.erase(PackedKind::kFloat32) != 0) kinds.insert(PackedKind::kFloat64);
        return kinds;
    }

    bool IsLeftOut(const Item& item) const {
        return item.table == items_.front()->table && item.role == "column" &&
               std::find(items_.begin(), items_.end(), &item) == items_.end();
    }

    /// Returns the packed schema, with the columns of the CSV in their order.
    std::string Schema() const {
        vxJson::Value schema = frame_.reader.Schema();
        vxJson::Value columns(vxJson::arrayKind, false);
        for (const Item* item : items_) columns.append(*item->schema);
        int position = 0;
        while (&frame_.reader.Schema()[position] != items_.front()->table->schema) ++position;
        detail::PackedBytes header(frame_.bytes.data(), frame_.bytes.size());
        header.Skip(2);
        if (schema[position]["column"] == columns)
            return {header.Next(), frame_.reader.Payload().data()};
        schema[position]["column"] = columns;
        return PackValue(schema);
    }

    Frame frame_;
    std::vector<const Item*> items_;  // of the columns
    std::vector<Field> columns_;
};

std::string PackText(const rapidjson::Document& text) {
    std::string frame;
    for (const char* key : {"version", "name", "schema"}) {
        if (!text.HasMember(key)) throw vxJson::Error(std::string("has no \"") + key + "\"");
        PackExact(text[key], frame);
    }
    if (!text.HasMember("payload") || !text["payload"].IsArray())
        throw vxJson::Error("has no \"payload\" of values");
    for (const rapidjson::Value& value : text["payload"].GetArray()) PackExact(value, frame);
    return frame;
}

/// Returns the frame of `content`, a sheet or a document, and its offsets.
template <typename Add>
std::string Write(const std::string& name, vxJson::Value& offsets, const Add& add) {
    if (name.empty()) throw vxJson::Error("has no unit, and there is no --name");
    PackedFrameWriter writer(name);
    add(writer);
    offsets = writer.Offsets();
    return writer.Frame();
}

/// Returns the frame of the input. Sets `offsets` if they are known.
std::string PackInput(const Options& options, const std::string& text, vxJson::Value& offsets) {
    const std::string& path = options.input;
    if (!options.like.empty()) {
        Likeness likeness(options.like);
        ForEachRecord(path, text, false,
                      [&](const std::vector<Cell>& cells) { likeness.Read(cells); });
        return likeness.Pack(options.name);
    }
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first == text.npos || (text[first] != '[' && text[first] != '{')) {
        const Sheet sheet = ReadSheet(path, text);
        return Write(options.name.empty() ? sheet.unit : options.name, offsets,
                     [&](PackedFrameWriter& writer) { sheet.AddTo(writer); });
    }
    const rapidjson::Document document = ParseJson(path, text);
    if (document.IsObject() && document.HasMember("version")) return PackText(document);
    if (options.name.empty() && path == kStandard)
        throw UsageError("a document from standard input needs a --name");
    const std::string stem = std::filesystem::path(path).stem();
    return Write(options.name.empty() ? stem : options.name, offsets,
                 [&](PackedFrameWriter& writer) { writer.AddItems(document); });
}

}  // namespace

void Pack(const Options& options, Output& output) {
    const std::string& path = options.input;
    const std::string text = ReadFile(path);
    if (text.empty()) throw Failure(path, "is empty");
    output.content = Content::kBinary;
    vxJson::Value offsets;
    try {
        output.text += PackInput(options, text, offsets);
    } catch (const vxJson::Error& error) {
        throw Failure(path, error.what());
    }
    if (options.offsetsOutput.empty()) return;
    if (offsets.isNull()) {
        PackedFrameReader reader;
        OpenFrame(reader, path, output.text.Bytes());
        offsets = reader.FindOffsets();
    }
    Output file(options.offsetsOutput);
    file.text += offsets.toString(false) + "\n";
    file.Complete();
}

}  // namespace dataengine::tool
