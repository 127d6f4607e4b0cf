#include "tools/dataengine/Csv.h"

#include <algorithm>

#include "tools/dataengine/Failure.h"

namespace dataengine::tool {
namespace {

/// Reads CSV text from front to end.
class CsvReader {
  public:
    explicit CsvReader(const std::string& text) : text_(text) {}

    bool AtEnd() const { return position_ >= text_.size(); }
    char Next() const { return text_[position_]; }
    void SkipLine() {
        position_ = std::min(text_.find('\n', position_), text_.size() - 1) + 1;
        ++line_;
    }

    /// Reads a record with its line break. Returns false if a quotation mark is not closed.
    bool Read(CsvRecord& record) {
        record = {line_, {std::nullopt}};
        bool isQuoted = false;
        for (; !AtEnd(); ++position_) {
            const char c = Next();
            if (c == '\n') ++line_;
            std::optional<std::string>& cell = record.cells.back();
            if (c == '"' && !(isQuoted && text_[position_ + 1] == '"')) {
                isQuoted = !isQuoted;
                if (!cell) cell.emplace();
            } else if (isQuoted) {
                if (c == '"') ++position_;  // a quotation mark is written twice
                *cell += c;
            } else if (c == ',') {
                record.cells.emplace_back();
            } else if (c == '\n') {
                ++position_;
                break;
            } else if (c != '\r' || text_[position_ + 1] != '\n') {
                if (!cell) cell.emplace();
                *cell += c;
            }
        }
        return !isQuoted;
    }

  private:
    const std::string& text_;
    std::size_t position_ = 0;
    int line_ = 1;
};

}  // namespace

std::vector<CsvRecord> ParseCsv(const std::string& path, const std::string& text,
                                bool hasComments) {
    std::vector<CsvRecord> records;
    for (CsvReader reader(text); !reader.AtEnd();) {
        if (hasComments && reader.Next() == '#') {
            reader.SkipLine();
            continue;
        }
        CsvRecord record;
        if (!reader.Read(record))
            throw Failure(
                path, "line " + std::to_string(record.line) + ": a quotation mark is not closed");
        if (!hasComments || record.cells.size() > 1 || record.cells.front())
            records.push_back(std::move(record));
    }
    return records;
}

void AppendCsv(std::string_view cell, bool isSafe, Buffer& text) {
    const bool isFormula = isSafe && !cell.empty() && cell.find_first_of("=+-@\t\r") == 0;
    if (!cell.empty() && !isFormula && cell.find_first_of(",\"\r\n") == cell.npos) {
        text += cell;
    } else {
        text += isFormula ? "\"'" : "\"";
        for (const char c : cell)
            text += std::string_view(c == '"' ? "\"\"" : &c, c == '"' ? 2 : 1);
        text += '"';
    }
    text += ',';
}

}  // namespace dataengine::tool
