#pragma once

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

/// Returns the rows of a table of test cases: one row per line, with fields separated by " | ".
/// Ignores blanks around fields, empty lines and lines that begin with #.
inline std::vector<std::vector<std::string>> Rows(const std::string& table) {
    std::vector<std::vector<std::string>> rows;
    std::istringstream lines(table);
    for (std::string line; std::getline(lines, line);) {
        std::vector<std::string> fields;
        for (std::size_t from = 0; from <= line.size();) {
            const std::size_t bar = std::min(line.find(" | ", from), line.size());
            const std::size_t first = std::min(line.find_first_not_of(' ', from), bar);
            const std::size_t last = line.find_last_not_of(' ', bar - 1);
            fields.push_back(first < bar ? line.substr(first, last - first + 1) : "");
            from = bar + 3;
        }
        if (fields != std::vector<std::string>{""} && line[0] != '#') rows.push_back(fields);
    }
    return rows;
}

/// Returns the bytes of a file, or an empty string if it cannot be read.
inline std::string FileText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Returns the table in a file.
inline std::vector<std::vector<std::string>> RowsOf(const std::string& file) {
    const std::string table = FileText(file);
    if (table.empty()) throw std::runtime_error("no table in " + file);
    return Rows(table);
}
