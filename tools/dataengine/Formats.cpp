#include "tools/dataengine/Formats.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "contracts/detail/rapidjson/RenderJson.h"
#include "structure/PackedFrame.h"

namespace dataengine::tool {
namespace {

using JsonValue = rapidjson::Value;

template <typename Number>
void AppendNumber(Number number, Buffer& text) {
    constexpr std::size_t kLongest = 24;
    char* const at = text.Reserve(kLongest);
    text.SetEnd(std::to_chars(at, at + kLongest, number).ptr);
}

/// Appends a double as rapidjson prints it. Most have two decimals, which are faster as integers.
void AppendDouble(double value, Buffer& text) {
    const double hundredths = value * 100;
    if (!(std::abs(hundredths) < 1e15) || std::nearbyint(hundredths) / 100 != value || value == 0) {
        constexpr std::size_t kLongest = 32;
        text.SetEnd(rapidjson::internal::dtoa(value, text.Reserve(kLongest)));
        return;
    }
    const auto count = static_cast<std::uint64_t>(std::abs(std::nearbyint(hundredths)));
    if (value < 0) text += '-';
    AppendNumber(count / 100, text);
    text += '.';
    text += static_cast<char>('0' + count / 10 % 10);
    if (count % 10 != 0) text += static_cast<char>('0' + count % 10);
}

void AppendString(std::string_view string, Buffer& text) {
    char* at = text.Reserve(string.size() + 2);
    *at++ = '"';
    bool isPlain = true;
    for (const char c : string) {
        isPlain &= static_cast<unsigned char>(c) >= ' ' && c != '"' && c != '\\';
        *at++ = c;
    }
    *at++ = '"';
    if (isPlain) return text.SetEnd(at);
    text += JsonString(string);
}

std::string_view StringOf(const JsonValue& value) {
    return {value.GetString(), value.GetStringLength()};
}

/// Prints the events of RenderJson.
struct JsonPrinter {
    Buffer& text;
    Sink* sink = nullptr;  // of `text`, if it may be written meanwhile
    bool isFirst = true;

    bool Null() { return Put("null"); }
    bool Bool(bool value) { return Put(value ? "true" : "false"); }
    bool Int(int value) { return Int64(value); }
    bool Uint(unsigned value) { return Uint64(value); }
    bool Int64(std::int64_t value) { return AppendNumber(value, Next()), true; }
    bool Uint64(std::uint64_t value) { return AppendNumber(value, Next()), true; }
    bool Double(double value) { return AppendDouble(value, Next()), true; }
    bool String(const char* bytes, std::size_t size, bool) {
        return AppendString({bytes, size}, Next()), true;
    }
    bool Key(const char* bytes, std::size_t size, bool) {
        AppendString({bytes, size}, Next());
        return Open(':');
    }
    bool StartArray() { return Next(), Open('['); }
    bool StartObject() { return Next(), Open('{'); }
    bool EndArray(std::size_t) { return Close(']'); }
    bool EndObject(std::size_t) { return Close('}'); }

    Buffer& Next() {
        if (sink != nullptr) sink->Check();
        if (!std::exchange(isFirst, false)) text += ',';
        return text;
    }
    bool Put(std::string_view value) { return Next() += value, true; }
    bool Open(char c) { return text += c, isFirst = true; }
    bool Close(char c) { return text += c, isFirst = false, true; }
};

void AppendJson(const JsonValue& value, Buffer& text) {
    if (value.IsString()) return AppendString(StringOf(value), text);
    if (value.IsInt64()) return AppendNumber(value.GetInt64(), text);
    JsonPrinter printer{text};
    if (value.IsArray() || value.IsObject()) {
        detail::RenderJson(value, printer);
    } else {
        detail::RenderScalar(value, printer);
    }
}

void PrintLine(const JsonValue& value, Sink& sink) {
    JsonPrinter printer{sink.text, &sink};
    detail::RenderJson(value, printer);
    sink.text += '\n';
}

bool IsTable(const JsonValue& item) {
    return item["type"].GetInt() == kTableType;
}

/// The columns of a decoded table as rows of values. Missing values are null.
class Grid {
  public:
    explicit Grid(const JsonValue& table) {
        for (const JsonValue& column : table["column"].GetArray()) {
            const auto value = column.FindMember("value");  // a table in a table has none
            const JsonValue& values = value == column.MemberEnd() ? kNull : value->value;
            // A value that is not an array belongs to the first row.
            columns_.push_back({StringOf(column["name"]), &values, values.IsNull() ? 0u : 1u});
            if (values.IsArray())
                columns_.back() = {columns_.back().name, values.Begin(), values.Size()};
            count_ = std::max(count_, columns_.back().count);
        }
    }

    /// Throws Failure if the rows repeat so many bytes that the output of a hostile frame would be
    /// out of proportion to its size.
    void CheckRepetition(const Decoded& frame, std::size_t bytesOfRow) const {
        if (bytesOfRow > (1000 * frame.size + (1 << 20)) / std::max<std::size_t>(count_, 1))
            throw Failure("each of " + std::to_string(count_) + " rows would repeat " +
                          std::to_string(bytesOfRow) + " bytes; use --format json");
    }

    std::string_view Name(std::size_t column) const { return columns_[column].name; }
    const JsonValue& Value(std::size_t row, std::size_t column) const {
        const Column& values = columns_[column];
        return row < values.count ? values.values[row] : kNull;
    }
    std::size_t Count() const { return count_; }

    std::size_t Columns() const { return columns_.size(); }

    /// Returns the text of a cell: a string as it is, null empty, anything else as JSON.
    static std::string_view Text(const JsonValue& value, Buffer& buffer) {
        if (value.IsString()) return StringOf(value);
        buffer.Truncate(0);
        if (!value.IsNull()) AppendJson(value, buffer);
        return buffer.Bytes();
    }

  private:
    struct Column {
        std::string_view name;
        const JsonValue* values;
        std::size_t count;
    };
    static const JsonValue kNull;
    std::vector<Column> columns_;
    std::size_t count_ = 0;
};
const JsonValue Grid::kNull;

/// Prints an object with the names and values of the items of a list that are not tables, after
/// `prefix` and `key`; nothing if there are none.
void PrintValues(std::string_view prefix, std::string_view key, const JsonValue& list, Sink& sink) {
    bool isFirst = true;
    for (const JsonValue& item : list.GetArray()) {
        if (IsTable(item)) continue;
        sink.text += isFirst ? prefix : ",";
        if (std::exchange(isFirst, false)) sink.text += key;
        AppendString(StringOf(item["name"]), sink.text);
        sink.text += ':';
        AppendJson(item["value"], sink.text);
    }
    if (!isFirst) sink.text += "}}\n";
}

void PrintTableRows(const Decoded& frame, const JsonValue& table, const std::string& prefix,
                    Sink& sink) {
    std::string start = prefix + ",\"table\":" + JsonString(StringOf(table["name"]));
    PrintValues(start, ",\"attributes\":{", table["attributes"], sink);
    start += ",\"row\":";
    const Grid rows(table);
    std::vector<std::string> keys;
    std::size_t repeated = start.size();
    for (std::size_t i = 0; i < rows.Columns(); ++i) {
        keys.push_back((i == 0 ? "" : ",") + JsonString(rows.Name(i)) + ":");
        repeated += keys.back().size() + 4;
    }
    rows.CheckRepetition(frame, repeated);
    for (std::size_t row = 0; row < rows.Count(); ++row) {
        sink.text += start;
        AppendNumber(row + 1, sink.text);
        sink.text += ",\"values\":{";
        for (std::size_t i = 0; i < keys.size(); ++i) {
            sink.text += keys[i];
            AppendJson(rows.Value(row, i), sink.text);
        }
        sink.text += "}}\n";
        sink.Check();
    }
}

/// Draws the leaves of a document, or the attributes of a table. Returns whether there are any.
bool DrawValues(const JsonValue& list, const Screen& screen, Sink& sink) {
    Rows rows = {{"name", "value"}};
    Buffer buffer;
    for (const JsonValue& item : list.GetArray())
        if (!IsTable(item))
            rows.push_back({std::string(StringOf(item["name"])),
                            std::string(Grid::Text(item["value"], buffer))});
    if (rows.size() > 1) DrawTable(rows, screen, sink);
    return rows.size() > 1;
}

void AppendCsv(std::string_view cell, const CsvStyle& style, Buffer& text) {
    const bool isFormula = style.isSafe && cell.substr(0, 1).find_first_of("=+-@\t\r") == 0;
    const bool isPlain = std::none_of(cell.begin(), cell.end(), [](char c) {
        return c == ',' || c == '"' || c == '\r' || c == '\n';
    });
    if (!cell.empty() && !isFormula && isPlain) {
        text += cell;
    } else {
        text += isFormula ? "\"'" : "\"";
        for (const char c : cell) text.Fill(c == '"' ? 2 : 1, c);
        text += '"';
    }
}

void PrintRows(const Decoded& frame, Sink& sink) {
    const std::string prefix =
        "{\"file\":" + JsonString(frame.path) + ",\"unit\":" + JsonString(frame.unit);
    PrintValues(prefix, ",\"values\":{", frame.document, sink);
    for (const JsonValue& item : frame.document.GetArray())
        if (IsTable(item)) PrintTableRows(frame, item, prefix, sink);
}

void PrintTables(const Decoded& frame, const Screen& screen, Sink& sink) {
    bool isFirst = !DrawValues(frame.document, screen, sink);
    for (const JsonValue& item : frame.document.GetArray()) {
        if (!IsTable(item)) continue;
        const Grid rows(item);
        const std::size_t columns = rows.Columns() + 1;
        rows.CheckRepetition(frame, (kWidestAligned + 2) * columns);
        const Cells cells = [&](std::size_t row, std::size_t column, Buffer& buffer) {
            if (row == 0) return column == 0 ? "#" : rows.Name(column - 1);
            if (column != 0) return Grid::Text(rows.Value(row - 1, column - 1), buffer);
            buffer.Truncate(0);
            AppendNumber(row, buffer);
            return buffer.Bytes();
        };
        if (!std::exchange(isFirst, false)) sink.text += '\n';
        sink.text += Printable(StringOf(item["name"])) + "\n\n";
        if (DrawValues(item["attributes"], screen, sink)) sink.text += '\n';
        DrawTable(rows.Count() + 1, columns, cells, screen, sink);
    }
}

}  // namespace

void PrintFrame(const Decoded& frame, const std::string& format, const Screen& screen, Sink& sink) {
    if (format == "json") PrintLine(frame.document, sink);
    if (format == "lines")
        for (const JsonValue& item : frame.document.GetArray()) PrintLine(item, sink);
    if (format == "rows") PrintRows(frame, sink);
    if (format == "table") PrintTables(frame, screen, sink);
}

const JsonValue* OnlyTable(const Decoded& frame) {
    const auto items = frame.document.GetArray();
    return std::count_if(items.begin(), items.end(), IsTable) == 1
               ? std::find_if(items.begin(), items.end(), IsTable)
               : nullptr;
}

std::string CsvHeader(const JsonValue& table, const CsvStyle& style) {
    const Grid rows(table);
    Buffer line;
    if (style.hasFile) line += "file";
    for (std::size_t i = 0; i < rows.Columns(); ++i) {
        if (i != 0 || style.hasFile) line += ',';
        AppendCsv(rows.Name(i), style, line);
    }
    return std::string(line.Bytes()) + "\n";
}

void PrintCsv(const Decoded& frame, const JsonValue& table, const CsvStyle& style, Sink& sink) {
    const Grid rows(table);
    Buffer file, cell;
    if (style.hasFile) AppendCsv(frame.path, style, file);
    rows.CheckRepetition(frame, file.Size() + rows.Columns() + 1);
    for (std::size_t row = 0; row < rows.Count(); ++row) {
        sink.text += file.Bytes();
        for (std::size_t i = 0; i < rows.Columns(); ++i) {
            if (i != 0 || style.hasFile) sink.text += ',';
            const JsonValue& value = rows.Value(row, i);
            if (!value.IsNull()) AppendCsv(Grid::Text(value, cell), style, sink.text);
        }
        sink.text += '\n';
        sink.Check();
    }
}

}  // namespace dataengine::tool
