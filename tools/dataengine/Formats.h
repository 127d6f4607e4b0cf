#pragma once

#include <rapidjson/document.h>

#include <string>

#include "tools/dataengine/Table.h"

/// The output formats of decoded documents.
namespace dataengine::tool {

/// A decoded frame.
struct Decoded {
    const std::string& path;
    const std::string& unit;
    std::size_t size;  // of the frame in bytes
    const rapidjson::Document& document;
};

/// Prints a frame in one of these formats:
///
///   json     one array and a line feed
///   lines    an item per line as JSON
///   rows     lines of JSON: one for the leaves, then for each table one for its attributes, if it
///            has any, and one for each of its rows
///   table    the leaves, then each table with its attributes, as aligned columns
void PrintFrame(const Decoded& frame, const std::string& format, const Screen& screen, Sink& sink);

/// How CSV is printed.
struct CsvStyle {
    bool hasFile;  // a column with the path of the frame before the others
    bool isSafe;   // no cell is a formula for a spreadsheet
};

/// Returns the only table of a frame, or null if it has none or several.
const rapidjson::Value* OnlyTable(const Decoded& frame);

/// Returns the header of a table as CSV.
std::string CsvHeader(const rapidjson::Value& table, const CsvStyle& style);

/// Prints the rows of a table. Null is an empty cell, an empty string is "", and arrays and objects
/// are JSON text.
void PrintCsv(const Decoded& frame, const rapidjson::Value& table, const CsvStyle& style,
              Sink& sink);

}  // namespace dataengine::tool
