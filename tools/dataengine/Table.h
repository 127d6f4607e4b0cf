#pragma once

#include <functional>
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

/// Returns the text of a cell, which may be stored in the buffer. Row 0 is the header.
using Cells = std::function<std::string_view(std::size_t row, std::size_t column, Buffer& buffer)>;

/// Cells that are kept as strings.
using Rows = std::vector<std::vector<std::string>>;

/// Draws a table of aligned columns, with escapes for what a terminal must not get. Cells are cut
/// to the width of the screen; columns that do not fit side by side follow in further blocks, each
/// of which repeats the first column. On an unlimited screen, a cell wider than kWidestAligned
/// columns pushes the rest of its row to the right.
void DrawTable(std::size_t rows, std::size_t columns, const Cells& cells, const Screen& screen,
               Sink& sink);
void DrawTable(const Rows& rows, const Screen& screen, Sink& sink);
constexpr std::size_t kWidestAligned = 100;

}  // namespace dataengine::tool
