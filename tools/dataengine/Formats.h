#pragma once

#include <rapidjson/document.h>

#include <string>
#include <vector>

#include "tools/dataengine/Table.h"

/// The output forms of a decoded document. `items` are its items as JSON texts.
namespace tool {

/// One JSON array.
std::string FormatJson(const std::vector<std::string>& items);

/// One item per line.
std::string FormatLines(const std::vector<std::string>& items);

/// The only table of the document: a line of column names, then a line for each row. Null is an
/// empty cell, an empty text is "", and arrays and objects are JSON text. Throws UsageError unless
/// there is exactly one table.
std::string FormatCsv(const rapidjson::Document& document);

/// Leaves, then each table with its attributes, as aligned columns for reading.
std::string FormatTables(const rapidjson::Document& document, const Screen& screen);

}  // namespace tool
