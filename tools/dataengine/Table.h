#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// The properties of the output on which a table is drawn.
struct Screen {
    std::size_t width;  // in columns; unlimited for a pipe or a file
    bool colour;

    /// Returns the screen for the output `path`. The width is COLUMNS, or else that of the
    /// terminal. Colour is used on a terminal only, and never if NO_COLOR is set.
    static Screen Of(const std::string& path);
};

/// Returns `text` as UTF-8 for a terminal. Control characters, marks that reorder text and bytes
/// that are not UTF-8 are escaped.
std::string Printable(std::string_view text);

/// A table of aligned columns. Cells are cut to the width of the screen. Columns that do not fit
/// side by side are drawn in further blocks, each of which repeats the first column.
class Table {
  public:
    using Row = std::vector<std::string>;

    explicit Table(Row header);
    /// Adds a row of as many cells as the header has.
    void Add(Row cells);
    std::string Draw(const Screen& screen) const;

  private:
    using Columns = std::vector<std::size_t>;

    Columns NextBlock(std::size_t first, std::size_t width) const;
    std::size_t WidestCell(const Columns& block, std::size_t width) const;
    void DrawRow(const Row& row, const Columns& block, std::size_t widest, std::string& out) const;

    std::vector<Row> rows_;  // the header first
    std::vector<std::size_t> widths_;
    std::vector<bool> numeric_;  // such columns are aligned to the right
};

}  // namespace tool
