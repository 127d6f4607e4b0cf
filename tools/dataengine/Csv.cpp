#include "tools/dataengine/Csv.h"

#include "tools/dataengine/Failure.h"
#include "tools/dataengine/Files.h"

namespace tool {
namespace {

/// Reads one record from `position` on and leaves `position` after its line break.
CsvRecord ReadRecord(const std::string& text, std::size_t& position, int& line, bool& quoted) {
    CsvRecord record{line, {""}};
    for (quoted = false; position < text.size(); ++position) {
        const char c = text[position];
        if (c == '\n') ++line;
        if (c == '"' && !(quoted && text[position + 1] == '"')) {
            quoted = !quoted;
        } else if (quoted) {
            if (c == '"') ++position;  // a quotation mark is written twice
            record.cells.back() += c;
        } else if (c == ',') {
            record.cells.emplace_back();
        } else if (c == '\n') {
            ++position;
            break;
        } else if (c != '\r') {
            record.cells.back() += c;
        }
    }
    return record;
}

}  // namespace

std::vector<CsvRecord> ParseCsv(const std::string& path, const std::string& text) {
    std::vector<CsvRecord> records;
    int line = 1;
    for (std::size_t position = 0; position < text.size();) {
        if (text[position] == '#') {
            position = std::min(text.find('\n', position), text.size() - 1) + 1;
            ++line;
            continue;
        }
        bool quoted = false;
        CsvRecord record = ReadRecord(text, position, line, quoted);
        if (quoted)
            throw Failure(
                path, "line " + std::to_string(record.line) + ": a quotation mark is not closed");
        if (record.cells != std::vector<std::string>{""}) records.push_back(std::move(record));
    }
    return records;
}

std::string CsvCell(const std::string& text) {
    if (!text.empty() && text.find_first_of(",\"\r\n") == text.npos) return text;
    std::string quoted = "\"";
    for (const char c : text) quoted.append(c == '"' ? 2 : 1, c);
    return quoted + "\"";
}

}  // namespace tool
