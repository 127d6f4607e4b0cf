#pragma once

#include <string>
#include <vector>

namespace tool {

/// A CSV record and the number of its first line, counted from 1.
struct CsvRecord {
    int line;
    std::vector<std::string> cells;
};

/// Splits CSV text into records. A cell in quotation marks may contain commas, line breaks, and
/// quotation marks written twice. Empty lines and lines that begin with '#' are skipped. Error
/// messages name `path`. Throws Failure if a quotation mark is not closed.
std::vector<CsvRecord> ParseCsv(const std::string& path, const std::string& text);

/// Returns `text` as a CSV cell, in quotation marks if it needs them. An empty string needs them,
/// because an empty cell is null.
std::string CsvCell(const std::string& text);

}  // namespace tool
