#include "tools/dataengine/Formats.h"

#include <algorithm>

#include "tools/dataengine/Csv.h"
#include "tools/dataengine/Failure.h"
#include "tools/dataengine/Frame.h"

namespace tool {
namespace {

bool IsTable(const rapidjson::Value& item) {
    return item["type"].GetInt() == kTableType;
}

/// Returns a value as the cell of a table: a string as it is, null empty, anything else as JSON.
std::string CellText(const rapidjson::Value& value) {
    if (value.IsNull()) return "";
    if (value.IsString()) return {value.GetString(), value.GetStringLength()};
    return JsonText(value);
}

/// The columns of a decoded table as rows of values. Missing values are null.
class Rows {
  public:
    explicit Rows(const rapidjson::Value& table) {
        for (const rapidjson::Value& column : table["column"].GetArray()) {
            names_.push_back(&column["name"]);
            const auto value = column.FindMember("value");
            columns_.push_back(value == column.MemberEnd() ? &null_ : &value->value);
            const rapidjson::Value& values = *columns_.back();
            const rapidjson::SizeType single = values.IsNull() ? 0 : 1;
            count_ = std::max(count_, values.IsArray() ? values.Size() : single);
        }
    }

    const std::vector<const rapidjson::Value*>& Names() const { return names_; }
    rapidjson::SizeType Count() const { return count_; }

    /// Returns the values of a row. A value that is not an array belongs to the first row.
    std::vector<const rapidjson::Value*> At(rapidjson::SizeType row) const {
        std::vector<const rapidjson::Value*> values;
        for (const rapidjson::Value* column : columns_) {
            const bool array = column->IsArray();
            const bool present = row < (array ? column->Size() : 1);
            values.push_back(!present ? &null_ : array ? &(*column)[row] : column);
        }
        return values;
    }

  private:
    rapidjson::Value null_;
    std::vector<const rapidjson::Value*> names_;
    std::vector<const rapidjson::Value*> columns_;
    rapidjson::SizeType count_ = 0;
};

std::string CsvLine(const std::vector<const rapidjson::Value*>& values) {
    std::string line;
    for (const rapidjson::Value* value : values)
        line += (value->IsNull() ? "" : CsvCell(CellText(*value))) + ",";
    if (!line.empty()) line.pop_back();
    return line + "\n";
}

/// Draws the leaves of a document, or the attributes of a table, if there are any.
std::string DrawValues(const rapidjson::Value& list, const Screen& screen) {
    Table table({"name", "value"});
    bool any = false;
    for (const rapidjson::Value& item : list.GetArray()) {
        if (IsTable(item)) continue;
        table.Add({CellText(item["name"]), CellText(item["value"])});
        any = true;
    }
    return any ? table.Draw(screen) : "";
}

std::string DrawRows(const rapidjson::Value& item, const Screen& screen) {
    const Rows rows(item);
    Table::Row header{"#"};
    for (const rapidjson::Value* name : rows.Names()) header.push_back(CellText(*name));
    Table table(header);
    for (rapidjson::SizeType row = 0; row < rows.Count(); ++row) {
        Table::Row cells{std::to_string(row + 1)};
        for (const rapidjson::Value* value : rows.At(row)) cells.push_back(CellText(*value));
        table.Add(std::move(cells));
    }
    return table.Draw(screen);
}

}  // namespace

std::string FormatJson(const std::vector<std::string>& items) {
    std::string text = "[";
    for (const std::string& item : items) text += (text.size() == 1 ? "" : ",") + item;
    return text + "]\n";
}

std::string FormatLines(const std::vector<std::string>& items) {
    std::string text;
    for (const std::string& item : items) text += item + "\n";
    return text;
}

std::string FormatCsv(const rapidjson::Document& document) {
    const auto items = document.GetArray();
    if (std::count_if(items.Begin(), items.End(), IsTable) != 1)
        throw UsageError("--format csv prints one table; name it with --select");
    const Rows rows(*std::find_if(items.Begin(), items.End(), IsTable));
    std::string text = CsvLine(rows.Names());
    for (rapidjson::SizeType row = 0; row < rows.Count(); ++row) text += CsvLine(rows.At(row));
    return text;
}

std::string FormatTables(const rapidjson::Document& document, const Screen& screen) {
    std::string text = DrawValues(document, screen);
    for (const rapidjson::Value& item : document.GetArray()) {
        if (!IsTable(item)) continue;
        text += (text.empty() ? "" : "\n") + Printable(CellText(item["name"])) + "\n\n";
        const std::string attributes = DrawValues(item["attributes"], screen);
        text += attributes + (attributes.empty() ? "" : "\n") + DrawRows(item, screen);
    }
    return text;
}

}  // namespace tool
