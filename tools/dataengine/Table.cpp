#include "tools/dataengine/Table.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cwchar>
#include <cwctype>
#include <limits>

#include "tools/dataengine/Failure.h"

namespace tool {
namespace {

constexpr std::size_t kGap = 2;     // blanks between columns
constexpr std::size_t kNarrow = 8;  // columns are not cut below this to fit into a block

/// One character of a string.
struct Glyph {
    std::string_view bytes;
    int width;  // in columns of a terminal; negative if it must be escaped
};

/// Returns whether a character is invisible or changes the direction of the text around it.
bool IsFormatMark(wchar_t c) {
    return c == 0x061c || (c >= 0x200b && c <= 0x200f) || (c >= 0x2028 && c <= 0x202e) ||
           (c >= 0x2060 && c <= 0x206f) || c == 0xfeff;
}

/// Returns the first character of `text`, which is not empty.
Glyph FirstGlyph(std::string_view text) {
    wchar_t c = 0;
    std::mbstate_t state = {};
    const std::size_t size = std::mbrtowc(&c, text.data(), text.size(), &state);
    if (size == 0 || size > text.size()) return {text.substr(0, 1), -1};
    return {text.substr(0, size), IsFormatMark(c) ? -1 : wcwidth(c)};
}

std::string Escape(std::string_view bytes) {
    static const char digits[] = "0123456789abcdef";
    if (bytes == "\n") return "\\n";
    if (bytes == "\r") return "\\r";
    if (bytes == "\t") return "\\t";
    std::string text;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        text += {'\\', 'x', digits[value >> 4], digits[value & 15]};
    }
    return text;
}

std::size_t WidthOf(std::string_view text) {
    std::size_t width = 0;
    while (!text.empty()) {
        const Glyph glyph = FirstGlyph(text);
        width += static_cast<std::size_t>(std::max(glyph.width, 0));
        text.remove_prefix(glyph.bytes.size());
    }
    return width;
}

/// Returns `text`, cut to `width` columns with an ellipsis if it is wider.
std::string Cut(std::string_view text, std::size_t width) {
    if (WidthOf(text) <= width) return std::string(text);
    std::size_t size = 0;
    std::size_t taken = 1;  // the ellipsis
    for (;;) {
        const Glyph glyph = FirstGlyph(text.substr(size));
        taken += static_cast<std::size_t>(std::max(glyph.width, 0));
        if (taken > width) return std::string(text.substr(0, size)) + "…";
        size += glyph.bytes.size();
    }
}

bool IsNumber(const std::string& cell) {
    return cell.find_first_not_of("0123456789.+-eE") == cell.npos;
}

}  // namespace

Screen Screen::Of(const std::string& path) {
    const bool terminal = path == kStandard && isatty(STDOUT_FILENO) == 1;
    const char* const noColour = std::getenv("NO_COLOR");
    Screen screen{std::numeric_limits<std::size_t>::max(),
                  terminal && (noColour == nullptr || *noColour == '\0')};
    const char* const columns = std::getenv("COLUMNS");
    const long given = columns == nullptr ? 0 : std::strtol(columns, nullptr, 10);
    winsize size = {};
    if (given > 0) {
        screen.width = static_cast<std::size_t>(given);
    } else if (terminal && ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
        screen.width = size.ws_col;
    }
    return screen;
}

std::string Printable(std::string_view text) {
    std::string printable;
    while (!text.empty()) {
        const Glyph glyph = FirstGlyph(text);
        printable += glyph.width < 0 ? Escape(glyph.bytes) : std::string(glyph.bytes);
        text.remove_prefix(glyph.bytes.size());
    }
    return printable;
}

Table::Table(Row header) : widths_(header.size()), numeric_(header.size(), true) {
    const std::vector<bool> numeric = numeric_;
    Add(std::move(header));
    numeric_ = numeric;
}

void Table::Add(Row cells) {
    for (std::size_t i = 0; i < cells.size(); ++i) {
        cells[i] = Printable(cells[i]);
        widths_[i] = std::max(widths_[i], WidthOf(cells[i]));
        numeric_[i] = numeric_[i] && IsNumber(cells[i]);
    }
    rows_.push_back(std::move(cells));
}

/// Returns the first column and as many from `first` on as fit next to it, but at least one.
Table::Columns Table::NextBlock(std::size_t first, std::size_t width) const {
    const auto fewest = [&](std::size_t i) { return std::min(widths_[i], kNarrow); };
    Columns block{0};
    std::size_t used = fewest(0);
    for (std::size_t i = first; i < widths_.size(); ++i) {
        used += kGap + fewest(i);
        if (used > width && block.size() > 1) break;
        block.push_back(i);
    }
    return block;
}

/// Returns the width to which the cells of a block are cut so that its rows fit.
std::size_t Table::WidestCell(const Columns& block, std::size_t width) const {
    std::size_t widest = *std::max_element(widths_.begin(), widths_.end());
    for (; widest > 1; --widest) {
        std::size_t used = kGap * (block.size() - 1);
        for (const std::size_t i : block) used += std::min(widths_[i], widest);
        if (used <= width) break;
    }
    return widest;
}

void Table::DrawRow(const Row& row, const Columns& block, std::size_t widest,
                    std::string& out) const {
    std::string line;
    for (const std::size_t i : block) {
        const std::size_t width = std::min(widths_[i], widest);
        const std::string cell = Cut(row[i], width);
        const std::string blanks(width - WidthOf(cell), ' ');
        if (i != block.front()) line.append(kGap, ' ');
        line += numeric_[i] ? blanks + cell : cell + blanks;
    }
    out.append(line, 0, line.find_last_not_of(' ') + 1);
}

std::string Table::Draw(const Screen& screen) const {
    std::string out;
    for (std::size_t first = 1; first == 1 || first < widths_.size();) {
        const Columns block = NextBlock(first, screen.width);
        const std::size_t widest = WidestCell(block, screen.width);
        if (first > 1) out += '\n';
        if (screen.colour) out += "\033[1m";
        DrawRow(rows_[0], block, widest, out);
        out += screen.colour ? "\033[0m\n" : "\n";
        for (std::size_t i = 1; i < rows_.size(); ++i) {
            DrawRow(rows_[i], block, widest, out);
            out += '\n';
        }
        first = block.back() + 1;
        if (block.size() == 1) break;
    }
    return out;
}

}  // namespace tool
