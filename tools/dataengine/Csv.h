#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/dataengine/Table.h"

namespace dataengine::tool {

/// A CSV record and the number of its first line, counted from 1. An empty cell is null; an empty
/// string is a pair of quotation marks.
struct CsvRecord {
    int line;
    std::vector<std::optional<std::string>> cells;
};

/// Splits CSV text into records. A cell in quotation marks may contain commas, line breaks, and
/// quotation marks written twice. If `hasComments`, empty lines and lines that begin with '#' are
/// skipped. Error messages name `path`. Throws Failure if a quotation mark is not closed.
std::vector<CsvRecord> ParseCsv(const std::string& path, const std::string& text, bool hasComments);

/// Appends a cell and a comma, in quotation marks if it needs them. If `isSafe`, cells that a
/// spreadsheet would run as a formula get an apostrophe.
void AppendCsv(std::string_view cell, bool isSafe, Buffer& text);

}  // namespace dataengine::tool
