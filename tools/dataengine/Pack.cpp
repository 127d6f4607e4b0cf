// Packs a frame from a CSV table or from a JSON document of the decoder's form.
//
// The records of the CSV, in this order:
//
//   unit,NAME                    the name of the frame
//   leaf,KIND,NAME,VALUE         any number
//   attribute,KIND,NAME,VALUE    of the table; any number
//   table,NAME
//   KIND:NAME,KIND:NAME,...      the columns of the table
//   VALUE,VALUE,...              a row; any number
//
// KIND is text, integer, number, boolean or bytes. An empty cell is null.
#include <charconv>
#include <cmath>
#include <filesystem>
#include <map>

#include "structure/PackedFrameWriter.h"
#include "tools/dataengine/Commands.h"
#include "tools/dataengine/Csv.h"
#include "tools/dataengine/Failure.h"
#include "tools/dataengine/Files.h"

namespace tool {
namespace {

// 11 marks a table. The decoder copies all other type numbers unchanged.
const std::map<std::string, int> kTypeOfKind = {
    {"text", 1}, {"integer", 2}, {"number", 3}, {"boolean", 4}, {"bytes", 5}};

/// Returns `text` as a number; nothing unless the whole text is one.
template <typename Number>
std::optional<Number> Parse(const std::string& text) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end ? std::optional(number) : std::nullopt;
}

/// Returns the value of a cell. Throws Failure if it is not of this kind.
vxJson::Value ValueOf(const std::string& kind, const std::string& cell) {
    if (cell.empty()) return {};
    if (kind == "text") return cell;
    if (kind == "bytes") return vxJson::Value::Binary(cell);
    if (kind == "boolean" && (cell == "true" || cell == "false")) return cell == "true";
    if (kind == "integer") {
        if (const auto number = Parse<long long>(cell)) return *number;
        if (const auto number = Parse<unsigned long long>(cell)) return *number;
    }
    if (kind == "number") {
        const auto number = Parse<double>(cell);
        if (number && std::isfinite(*number)) return *number;
    }
    throw Failure("\"" + cell + "\" is not of the kind " + kind);
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

/// The content of a CSV file, in the order of a frame.
class Sheet {
  public:
    void Read(const std::vector<std::string>& cells) {
        if (!columns_.empty()) {
            ReadRow(cells);
        } else if (!table_.empty()) {
            ReadColumns(cells);
        } else if (cells.size() == 2 && cells[0] == "unit") {
            unit_ = cells[1];
        } else if (cells.size() == 2 && cells[0] == "table") {
            table_ = cells[1];
        } else if (cells.size() == 4 && (cells[0] == "leaf" || cells[0] == "attribute")) {
            auto& fields = cells[0] == "leaf" ? leaves_ : attributes_;
            fields.push_back(MakeField(cells[1], cells[2]));
            fields.back().value = ValueOf(cells[1], cells[3]);
        } else {
            throw Failure("is not a unit, leaf, attribute or table");
        }
    }

    const std::string& Unit() const { return unit_; }

    void AddTo(dataengine::PackedFrameWriter& writer, const std::string& path) const {
        for (const Field& leaf : leaves_) writer.AddLeaf(leaf.name, leaf.type, leaf.value);
        if (columns_.empty()) throw Failure(path, "has no table");
        auto table = writer.AddTable(table_, true, {columns_.front().name});
        for (const Field& column : columns_)
            table.AddColumn(column.name, column.type, column.value);
        for (const Field& attribute : attributes_)
            table.AddAttribute(attribute.name, attribute.type, attribute.value);
    }

  private:
    void ReadColumns(const std::vector<std::string>& cells) {
        std::vector<Field> columns;
        for (const std::string& cell : cells) {
            const std::size_t colon = cell.find(':');
            if (colon == cell.npos) throw Failure("column \"" + cell + "\" is not kind:name");
            columns.push_back(MakeField(cell.substr(0, colon), cell.substr(colon + 1)));
            columns.back().value = vxJson::Value(vxJson::arrayKind, false);
        }
        columns_ = std::move(columns);
    }

    void ReadRow(const std::vector<std::string>& cells) {
        if (cells.size() != columns_.size())
            throw Failure("has " + std::to_string(cells.size()) + " cells for " +
                          std::to_string(columns_.size()) + " columns");
        for (std::size_t i = 0; i < cells.size(); ++i)
            columns_[i].value.append(ValueOf(columns_[i].kind, cells[i]));
    }

    std::string unit_;
    std::string table_;
    std::vector<Field> leaves_;
    std::vector<Field> columns_;
    std::vector<Field> attributes_;
};

dataengine::PackedFrameWriter PackCsv(const PackOptions& options, const std::string& text) {
    Sheet sheet;
    for (const CsvRecord& record : ParseCsv(options.input, text)) {
        try {
            sheet.Read(record.cells);
        } catch (const Failure& failure) {
            throw Failure(options.input,
                          "line " + std::to_string(record.line) + ": " + failure.what());
        }
    }
    const std::string& name = options.name.empty() ? sheet.Unit() : options.name;
    if (name.empty()) throw Failure(options.input, "has no unit, and there is no --name");
    dataengine::PackedFrameWriter writer(name);
    sheet.AddTo(writer, options.input);
    return writer;
}

dataengine::PackedFrameWriter PackJson(const PackOptions& options, const std::string& text) {
    if (options.name.empty() && options.input == kStandard)
        throw UsageError("a document from standard input needs a --name");
    const std::string stem = std::filesystem::path(options.input).stem();
    dataengine::PackedFrameWriter writer(options.name.empty() ? stem : options.name);
    writer.AddItems(ParseJson(options.input, text));
    return writer;
}

bool IsJson(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    return first != text.npos && (text[first] == '[' || text[first] == '{');
}

}  // namespace

int Pack(const PackOptions& options) {
    CheckPaths({options.input}, {options.output, options.offsets});
    const std::string text = ReadFile(options.input);
    if (text.empty()) throw Failure(options.input, "is empty");
    try {
        const dataengine::PackedFrameWriter writer =
            IsJson(text) ? PackJson(options, text) : PackCsv(options, text);
        std::vector<FileContent> files = {{options.output, writer.Frame()}};
        if (!options.offsets.empty())
            files.push_back({options.offsets, writer.Offsets().toString(false) + "\n"});
        WriteFiles(files);
    } catch (const vxJson::Error& error) {
        throw Failure(options.input, error.what());
    }
    return 0;
}

}  // namespace tool
