#include "tools/dataengine/Table.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "tools/dataengine/Failure.h"
#include "tools/dataengine/Text.h"

namespace dataengine::tool {
namespace {

constexpr std::size_t kGap = 2;     // blanks between columns
constexpr std::size_t kNarrow = 8;  // columns are not cut below this to fit into a block

bool IsNumber(std::string_view cell) {
    return std::all_of(cell.begin(), cell.end(), [](char c) {
        return (c >= '0' && c <= '9') || c == '.' || c == '-' || c == '+' || c == 'e' || c == 'E';
    });
}

class Drawing {
  public:
    Drawing(const Cells& cells, const Screen& screen, Sink& sink)
        : cells_(cells),
          screen_(screen),
          sink_(sink),
          widths_(cells.Columns()),
          isNumeric_(cells.Columns(), 1) {
        for (std::size_t row = 0; row < cells_.Rows(); ++row) {
            for (std::size_t i = 0; i < widths_.size(); ++i) {
                const auto integer = cells_.IntegerWidth(row, i);
                const std::size_t width = integer ? *integer : Read(row, i);
                widths_[i] = std::max(widths_[i], std::min(width, Widest()));
                if (row != 0 && !integer && !IsNumber(cell_)) isNumeric_[i] = 0;
            }
        }
    }

    void Draw() {
        for (std::size_t first = 1; first == 1 || first < widths_.size();) {
            const std::vector<std::size_t> block = NextBlock(first);
            const std::size_t widest = WidestCell(block);
            if (first > 1) sink_.text += '\n';
            for (std::size_t row = 0; row < cells_.Rows(); ++row) {
                const bool isBold = row == 0 && screen_.color;
                if (isBold) sink_.text += "\033[1m";
                DrawRow(row, block, widest);
                sink_.text += isBold ? "\033[0m\n" : "\n";
                sink_.Check();
            }
            first = block.back() + 1;
            if (block.size() == 1) break;
        }
    }

  private:
    std::size_t Widest() const {
        return screen_.width == kUnlimited ? kWidestAligned : screen_.width;
    }

    /// Reads a cell and returns its width.
    std::size_t Read(std::size_t row, std::size_t column) {
        buffer_.Truncate(0);
        cells_.Append(row, column, buffer_);
        cell_ = buffer_.Bytes();
        if (IsPlain(cell_)) return cell_.size();
        escaped_ = Printable(cell_);
        cell_ = escaped_;
        return WidthOf(cell_);
    }

    /// Returns the first column and as many from `first` on as fit next to it, but at least one.
    std::vector<std::size_t> NextBlock(std::size_t first) const {
        const auto fewest = [&](std::size_t i) { return std::min(widths_[i], kNarrow); };
        std::vector<std::size_t> block{0};
        std::size_t used = fewest(0);
        for (std::size_t i = first; i < widths_.size(); ++i) {
            used += kGap + fewest(i);
            if (used > screen_.width && block.size() > 1) break;
            block.push_back(i);
        }
        return block;
    }

    /// Returns the width to which the cells of a block are cut so that its rows fit.
    std::size_t WidestCell(const std::vector<std::size_t>& block) const {
        if (screen_.width == kUnlimited) return kUnlimited;
        std::size_t fits = 1;
        for (std::size_t tooWide = Widest() + 1; fits + 1 < tooWide;) {
            const std::size_t widest = (fits + tooWide) / 2;
            std::size_t used = kGap * (block.size() - 1);
            for (const std::size_t i : block) used += std::min(widths_[i], widest);
            (used <= screen_.width ? fits : tooWide) = widest;
        }
        return fits;
    }

    void DrawRow(std::size_t row, const std::vector<std::size_t>& block, std::size_t widest) {
        Buffer& line = sink_.text;
        const std::size_t begin = line.Size();
        for (const std::size_t i : block) {
            std::size_t width = Read(row, i);
            if (width > widest) {
                escaped_ = Cut(cell_, widest);
                cell_ = escaped_;
                width = WidthOf(cell_);
            }
            const std::size_t column = std::min(widths_[i], widest);
            const std::size_t blanks = column > width ? column - width : 0;
            if (i != block.front()) line.Fill(kGap);
            if (isNumeric_[i] != 0) line.Fill(blanks);
            line += cell_;
            if (isNumeric_[i] == 0) line.Fill(blanks);
        }
        line.Truncate(std::max(line.Bytes().find_last_not_of(' ') + 1, begin));
    }

    static constexpr std::size_t kUnlimited = std::numeric_limits<std::size_t>::max();
    const Cells& cells_;
    const Screen& screen_;
    Sink& sink_;
    std::vector<std::size_t> widths_;
    std::vector<char> isNumeric_;  // such columns are aligned to the right
    Buffer buffer_;
    std::string escaped_;
    std::string_view cell_;  // in one of the two
};

}  // namespace

Screen Screen::Of(const Options& options) {
    const bool isTerminal = options.output == kStandard && isatty(STDOUT_FILENO) == 1;
    const char* const noColor = std::getenv("NO_COLOR");
    const bool isWanted = isTerminal && (noColor == nullptr || *noColor == '\0');
    Screen screen{std::numeric_limits<std::size_t>::max(),
                  options.color == "auto" ? isWanted : options.color == "always"};
    const char* const columns = std::getenv("COLUMNS");
    const long given = columns == nullptr ? 0 : std::strtol(columns, nullptr, 10);
    winsize size = {};
    if (given > 0) {
        screen.width = static_cast<std::size_t>(given);
    } else if (isTerminal && ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
        screen.width = size.ws_col;
    }
    return screen;
}

void DrawTable(const Cells& cells, const Screen& screen, Sink& sink) {
    Drawing(cells, screen, sink).Draw();
}

}  // namespace dataengine::tool
