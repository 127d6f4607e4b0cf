#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/dataengine/Commands.h"
#include "tools/dataengine/Files.h"

namespace dataengine::tool {

/// The properties of the output on which a table is drawn.
struct Screen {
    /// The width is COLUMNS, or else that of the terminal. By default, color is used on a terminal
    /// only, and not if NO_COLOR is set.
    explicit Screen(const Options& options);

    std::size_t width;  // in columns; the greatest number for a pipe or a file
    bool hasColor;
};

/// The cells of a table. Row 0 is the header.
class Cells {
  public:
    virtual ~Cells() = default;
    virtual std::size_t Rows() const = 0;
    virtual std::size_t Columns() const = 0;

    /// Returns the text of a cell, which may be stored in `buffer`.
    virtual std::string_view At(std::size_t row, std::size_t column, Buffer& buffer) const = 0;
};

/// Cells that are kept as strings.
struct StringCells : Cells {
    std::vector<std::vector<std::string>> rows;

    std::size_t Rows() const override { return rows.size(); }
    std::size_t Columns() const override { return rows.front().size(); }
    std::string_view At(std::size_t row, std::size_t column, Buffer&) const override {
        return rows[row][column];
    }
};

/// Draws a table of aligned columns, with escapes for what a terminal must not get. Cells are cut
/// to the width of the screen; columns that do not fit side by side follow in further blocks, each
/// of which repeats the first column. On an unlimited screen, a cell wider than kWidestAligned
/// columns pushes the rest of its row to the right.
void DrawTable(const Cells& cells, const Screen& screen, Sink& sink);
constexpr std::size_t kWidestAligned = 100;

}  // namespace dataengine::tool
