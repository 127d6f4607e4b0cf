#include "tools/dataengine/Formats.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "contracts/detail/rapidjson/RenderJson.h"
#include "structure/PackedFrame.h"
#include "tools/dataengine/Csv.h"
#include "tools/dataengine/Exact.h"
#include "tools/dataengine/Failure.h"
#include "tools/dataengine/Text.h"

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

std::string_view StringOf(const JsonValue& value) {
    return {value.GetString(), value.GetStringLength()};
}

/// Appends a string as JSON. Returns false, with nothing appended, if it needs escapes.
bool AppendPlain(std::string_view string, Buffer& text) {
    char* at = text.Reserve(string.size() + 2);
    *at++ = '"';
    bool isPlain = true;
    for (const char c : string) {
        isPlain &= static_cast<unsigned char>(c) >= ' ' && c != '"' && c != '\\';
        *at++ = c;
    }
    *at++ = '"';
    if (isPlain) text.SetEnd(at);
    return isPlain;
}

void AppendJson(const JsonValue& value, Buffer& text) {
    if (value.IsString() && AppendPlain(StringOf(value), text)) return;
    if (value.IsUint64()) return AppendNumber(value.GetUint64(), text);
    if (value.IsInt64()) return AppendNumber(value.GetInt64(), text);
    if (value.IsDouble()) return AppendDouble(value.GetDouble(), text);
    if (value.IsNull()) return text += "null";
    if (value.IsBool()) return text += value.GetBool() ? "true" : "false";
    detail::JsonBuffer buffer;
    detail::JsonWriter writer(buffer);
    detail::RenderJson(value, writer);
    text += std::string_view(buffer.GetString(), buffer.GetSize());
}

/// Appends a value as the cell of a table: a string as it is, null empty, anything else as JSON.
void AppendCell(const JsonValue& value, Buffer& text) {
    if (value.IsString()) {
        text += StringOf(value);
    } else if (!value.IsNull()) {
        AppendJson(value, text);
    }
}

std::string CellText(const JsonValue& value) {
    Buffer text;
    AppendCell(value, text);
    return std::string(text.Bytes());
}

bool IsTable(const JsonValue& item) {
    return item["type"].GetInt() == kTableType;
}

/// The value of an item; null for a table in a table, which has none.
const JsonValue& ValueOf(const JsonValue& item) {
    static const JsonValue null;
    const auto value = item.FindMember("value");
    return value == item.MemberEnd() ? null : value->value;
}

/// The columns of a decoded table as rows of values. Missing values are null.
class Grid : public Cells {
  public:
    explicit Grid(const JsonValue& table) : table_(table["column"]) {
        for (const JsonValue& column : table_.GetArray()) {
            const JsonValue& values = ValueOf(column);
            // A value that is not an array belongs to the first row.
            columns_.push_back(values.IsArray()  ? Column{values.Begin(), values.Size()}
                               : values.IsNull() ? Column{&values, 0}
                                                 : Column{&values, 1});
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

    const JsonValue& Name(std::size_t column) const {
        return table_[static_cast<rapidjson::SizeType>(column)]["name"];
    }
    const JsonValue& At(std::size_t row, std::size_t column) const {
        static const JsonValue null;
        const Column& values = columns_[column];
        return row < values.count ? values.values[row] : null;
    }
    std::size_t Count() const { return count_; }

    // With a header, and a first column of row numbers.
    std::size_t Rows() const override { return count_ + 1; }
    std::size_t Columns() const override { return columns_.size() + 1; }
    void Append(std::size_t row, std::size_t column, Buffer& text) const override {
        if (column == 0) {
            row == 0 ? static_cast<void>(text += '#') : AppendNumber(row, text);
        } else {
            AppendCell(row == 0 ? Name(column - 1) : At(row - 1, column - 1), text);
        }
    }

    std::optional<std::size_t> IntegerWidth(std::size_t row, std::size_t column) const override {
        if (row == 0 || column == 0) return {};
        const JsonValue& value = At(row - 1, column - 1);
        if (value.IsNull()) return 0;
        if (!value.IsUint64()) return {};
        const std::uint64_t number = value.GetUint64();
        std::size_t width = 1;
        for (std::uint64_t limit = 10; width < 19 && number >= limit; limit *= 10) ++width;
        return number >= 10'000'000'000'000'000'000u ? 20 : width;
    }

  private:
    struct Column {
        const JsonValue* values;
        std::size_t count;
    };
    const JsonValue& table_;
    std::vector<Column> columns_;
    std::size_t count_ = 0;
};

/// Prints a list with a comma after each element but the last.
template <typename Print>
// NOLINTNEXTLINE(misc-no-recursion)
void PrintList(const JsonValue& list, Sink& sink, const Print& print) {
    for (const JsonValue& element : list.GetArray()) {
        if (&element != list.Begin()) sink.text += ',';
        print(element);
        sink.Check();
    }
}

/// Prints an item, and the columns and attributes of a table, which have no children.
// NOLINTNEXTLINE(misc-no-recursion)
void PrintItem(const JsonValue& item, Sink& sink) {
    char separator = '{';
    for (const auto& member : item.GetObject()) {
        sink.text += separator;
        AppendJson(member.name, sink.text);
        sink.text += ':';
        if (member.value.IsArray()) {
            const bool holdsItems = StringOf(member.name) != "value";
            sink.text += '[';
            // NOLINTNEXTLINE(misc-no-recursion)
            PrintList(member.value, sink, [&](const JsonValue& element) {
                holdsItems ? PrintItem(element, sink) : AppendJson(element, sink.text);
            });
            sink.text += ']';
        } else {
            AppendJson(member.value, sink.text);
        }
        separator = ',';
    }
    sink.text += '}';
}

/// Prints an object with the names and values of the items of a list that are not tables, after
/// `prefix` and `key`; nothing if there are none.
void PrintValues(std::string_view prefix, std::string_view key, const JsonValue& list, Sink& sink) {
    char separator = '{';
    for (const JsonValue& item : list.GetArray()) {
        if (IsTable(item)) continue;
        if (separator == '{') {
            sink.text += prefix;
            sink.text += key;
        }
        sink.text += separator;
        AppendJson(item["name"], sink.text);
        sink.text += ':';
        AppendJson(item["value"], sink.text);
        separator = ',';
    }
    if (separator == ',') sink.text += "}}\n";
}

void PrintTableRows(const Decoded& frame, const JsonValue& table, const std::string& prefix,
                    Sink& sink) {
    Buffer start;
    start += prefix;
    start += ",\"table\":";
    AppendJson(table["name"], start);
    PrintValues(start.Bytes(), ",\"attributes\":", table["attributes"], sink);
    start += ",\"row\":";
    const Grid rows(table);
    std::vector<Buffer> keys;
    std::size_t repeated = start.Size();
    for (std::size_t i = 0; i + 1 < rows.Columns(); ++i) {
        keys.emplace_back() += i == 0 ? "" : ",";
        AppendJson(rows.Name(i), keys.back());
        keys.back() += ':';
        repeated += keys.back().Size() + 4;
    }
    rows.CheckRepetition(frame, repeated);
    for (std::size_t row = 0; row < rows.Count(); ++row) {
        sink.text += start.Bytes();
        AppendNumber(row + 1, sink.text);
        sink.text += ",\"values\":{";
        for (std::size_t i = 0; i < keys.size(); ++i) {
            sink.text += keys[i].Bytes();
            AppendJson(rows.At(row, i), sink.text);
        }
        sink.text += "}}\n";
        sink.Check();
    }
}

/// Draws the leaves of a document, or the attributes of a table. Returns whether there are any.
bool DrawValues(const JsonValue& list, const Screen& screen, Sink& sink) {
    StringCells cells;
    cells.rows = {{"name", "value"}};
    for (const JsonValue& item : list.GetArray()) {
        if (IsTable(item)) continue;
        cells.rows.push_back({CellText(item["name"]), CellText(item["value"])});
    }
    if (cells.rows.size() == 1) return false;
    DrawTable(cells, screen, sink);
    return true;
}

const JsonValue& OnlyTable(const Decoded& frame) {
    const auto items = frame.document.GetArray();
    if (CountTables(frame) != 1) throw UsageError(kOneTable);
    return *std::find_if(items.begin(), items.end(), IsTable);
}

}  // namespace

std::ptrdiff_t CountTables(const Decoded& frame) {
    const auto items = frame.document.GetArray();
    return std::count_if(items.begin(), items.end(), IsTable);
}

void PrintJson(const Decoded& frame, Sink& sink) {
    sink.text += '[';
    PrintList(frame.document, sink, [&](const JsonValue& item) { PrintItem(item, sink); });
    sink.text += "]\n";
}

void PrintLines(const Decoded& frame, Sink& sink) {
    for (const JsonValue& item : frame.document.GetArray()) {
        PrintItem(item, sink);
        sink.text += '\n';
    }
}

void PrintRows(const Decoded& frame, Sink& sink) {
    const std::string prefix =
        "{\"file\":" + JsonString(frame.path) + ",\"unit\":" + JsonString(frame.unit);
    PrintValues(prefix, ",\"values\":", frame.document, sink);
    for (const JsonValue& item : frame.document.GetArray())
        if (IsTable(item)) PrintTableRows(frame, item, prefix, sink);
}

std::string CsvHeader(const Decoded& frame, bool withFile, bool isSafe) {
    const Grid rows(OnlyTable(frame));
    Buffer line;
    if (withFile) line += "file,";
    for (std::size_t i = 0; i + 1 < rows.Columns(); ++i)
        AppendCsv(StringOf(rows.Name(i)), isSafe, line);
    return std::string(line.Bytes().substr(0, line.Size() - (line.Size() > 0))) + "\n";
}

void PrintCsv(const Decoded& frame, bool withFile, bool isSafe, Sink& sink) {
    const Grid rows(OnlyTable(frame));
    Buffer file, cell;
    if (withFile) AppendCsv(frame.path, isSafe, file);
    rows.CheckRepetition(frame, file.Size() + rows.Columns());
    for (std::size_t row = 0; row < rows.Count(); ++row) {
        sink.text += file.Bytes();
        for (std::size_t i = 0; i + 1 < rows.Columns(); ++i) {
            cell.Truncate(0);
            AppendCell(rows.At(row, i), cell);
            if (rows.At(row, i).IsNull()) {
                sink.text += ',';
            } else {
                AppendCsv(cell.Bytes(), isSafe, sink.text);
            }
        }
        sink.text.Truncate(sink.text.Size() - 1);  // the last comma
        sink.text += '\n';
        sink.Check();
    }
}

void PrintTables(const Decoded& frame, const Screen& screen, Sink& sink) {
    bool isFirst = !DrawValues(frame.document, screen, sink);
    for (const JsonValue& item : frame.document.GetArray()) {
        if (!IsTable(item)) continue;
        const Grid rows(item);
        rows.CheckRepetition(frame, (kWidestAligned + 2) * rows.Columns());
        if (!std::exchange(isFirst, false)) sink.text += '\n';
        sink.text += Printable(StringOf(item["name"])) + "\n\n";
        if (DrawValues(item["attributes"], screen, sink)) sink.text += '\n';
        DrawTable(rows, screen, sink);
    }
}

}  // namespace dataengine::tool
