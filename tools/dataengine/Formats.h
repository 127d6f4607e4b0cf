#pragma once

#include <rapidjson/document.h>

#include <string>
#include <vector>

#include "tools/dataengine/Table.h"

/// The output formats of a decoded document. `items` are its items as JSON text.
namespace tool {

/// Returns one JSON array.
std::string FormatJson(const std::vector<std::string>& items);

/// Returns one item per line.
std::string FormatLines(const std::vector<std::string>& items);

/// Returns the only table of the document: a line of column names, then a line for each row. Null
/// is an empty cell, an empty string is "", and arrays and objects are JSON text. Throws UsageError
/// unless there is exactly one table.
std::string FormatCsv(const rapidjson::Document& document);

/// Returns the leaves, then each table with its attributes, as aligned columns.
std::string FormatTables(const rapidjson::Document& document, const Screen& screen);

}  // namespace tool
