#pragma once

#include <string>
#include <vector>

namespace tool {

/// A record of a CSV text and the number of the line on which it begins, counted from 1.
struct CsvRecord {
    int line;
    std::vector<std::string> cells;
};

/// Splits CSV text into records. A cell in quotation marks may hold commas, line breaks, and
/// quotation marks written twice. Empty lines and lines that begin with '#' are skipped. Throws
/// Failure at a quotation mark that is not closed.
std::vector<CsvRecord> ParseCsv(const std::string& path, const std::string& text);

/// Returns a cell as CSV, in quotation marks where it needs them; an empty one needs them, since
/// nothing at all is null.
std::string CsvCell(const std::string& text);

}  // namespace tool
