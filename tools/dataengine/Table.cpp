#include "tools/dataengine/Table.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace dataengine::tool {
namespace {

constexpr std::size_t kUnlimited = std::numeric_limits<std::size_t>::max();
constexpr std::size_t kGap = 2;     // blanks between columns
constexpr std::size_t kNarrow = 8;  // columns are not cut below this to fit into a block

bool IsNumber(std::string_view cell) {
    return std::all_of(cell.begin(), cell.end(), [](char c) {
        return (c >= '0' && c <= '9') || c == '.' || c == '-' || c == '+' || c == 'e' || c == 'E';
    });
}

class Drawing {
  public:
    Drawing(std::size_t rows, std::size_t columns, const Cells& cells, const Screen& screen,
            Sink& sink)
        : rows_(rows), cells_(cells), screen_(screen), sink_(sink), columns_(columns) {
        const std::size_t limit = screen.width == kUnlimited ? kWidestAligned : screen.width;
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            Column& column = columns_[i];
            bool isPlain = true;
            for (std::size_t row = 0; row < rows_; ++row) {
                const Cell cell = Read(row, i);
                column.width = std::max(column.width, std::min(cell.width, limit));
                column.isNumeric = column.isNumeric && (row == 0 || IsNumber(cell.text));
                isPlain = isPlain && cell.text.data() != safe_.data();
            }
            column.isPlain = isPlain;
        }
    }

    void Draw() {
        std::size_t next = 1;
        do {
            const std::vector<std::size_t> block = NextBlock(next);
            const std::size_t widest = WidestCell(block);
            if (next > 1) sink_.text += '\n';
            for (std::size_t row = 0; row < rows_; ++row) {
                const bool isBold = row == 0 && screen_.hasColor;
                if (isBold) sink_.text += "\033[1m";
                DrawRow(row, block, widest);
                sink_.text += isBold ? "\033[0m\n" : "\n";
                sink_.Check();
            }
            next = block.back() + 1;
        } while (next > 1 && next < columns_.size());
    }

  private:
    struct Column {
        std::size_t width = 0;
        bool isNumeric = true;  // such columns are aligned to the right
        bool isPlain = false;   // whether it is known that no cell needs escapes
    };
    struct Cell {
        std::string_view text;
        std::size_t width;
    };

    /// Returns a cell with escapes.
    Cell Read(std::size_t row, std::size_t column) {
        const std::string_view text = cells_(row, column, buffer_);
        if (columns_[column].isPlain || IsPlain(text)) return {text, text.size()};
        safe_ = Printable(text);
        return {safe_, WidthOf(safe_)};
    }

    /// Returns the first column and as many from `first` on as fit next to it, but at least one.
    std::vector<std::size_t> NextBlock(std::size_t first) const {
        std::vector<std::size_t> block{0};
        std::size_t used = std::min(columns_[0].width, kNarrow);
        for (std::size_t i = first; i < columns_.size(); ++i) {
            used += kGap + std::min(columns_[i].width, kNarrow);
            if (used > screen_.width && block.size() > 1) break;
            block.push_back(i);
        }
        return block;
    }

    /// Returns the width to which the cells of a block are cut so that its rows fit.
    std::size_t WidestCell(const std::vector<std::size_t>& block) const {
        if (screen_.width == kUnlimited) return kUnlimited;
        std::size_t fits = 1;
        for (std::size_t tooWide = screen_.width + 1; fits + 1 < tooWide;) {
            const std::size_t widest = (fits + tooWide) / 2;
            std::size_t used = kGap * (block.size() - 1);
            for (const std::size_t i : block) used += std::min(columns_[i].width, widest);
            (used <= screen_.width ? fits : tooWide) = widest;
        }
        return fits;
    }

    void DrawRow(std::size_t row, const std::vector<std::size_t>& block, std::size_t widest) {
        Buffer& line = sink_.text;
        const std::size_t begin = line.Size();
        for (const std::size_t i : block) {
            Cell cell = Read(row, i);
            if (cell.width > widest) {
                cut_ = Cut(cell.text, widest);
                cell = {cut_, WidthOf(cut_)};
            }
            const std::size_t width = std::min(columns_[i].width, widest);
            const std::size_t blanks = width - std::min(cell.width, width);
            if (i != block.front()) line.Fill(kGap, ' ');
            if (columns_[i].isNumeric) line.Fill(blanks, ' ');
            line += cell.text;
            if (!columns_[i].isNumeric) line.Fill(blanks, ' ');
        }
        line.Truncate(std::max(line.Bytes().find_last_not_of(' ') + 1, begin));
    }

    const std::size_t rows_;
    const Cells& cells_;
    const Screen& screen_;
    Sink& sink_;
    std::vector<Column> columns_;
    Buffer buffer_;
    std::string safe_, cut_;
};

}  // namespace

Screen::Screen(const Options& options) : width(kUnlimited), hasColor(options.color == "always") {
    const bool isTerminal = options.output == kStandard && isatty(STDOUT_FILENO) == 1;
    const char* const noColor = std::getenv("NO_COLOR");
    if (options.color == "auto") hasColor = isTerminal && (noColor == nullptr || *noColor == '\0');
    const char* const columns = std::getenv("COLUMNS");
    const long given = columns == nullptr ? 0 : std::strtol(columns, nullptr, 10);
    winsize size = {};
    if (given > 0) {
        width = static_cast<std::size_t>(given);
    } else if (isTerminal && ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
        width = size.ws_col;
    }
}

void DrawTable(std::size_t rows, std::size_t columns, const Cells& cells, const Screen& screen,
               Sink& sink) {
    Drawing(rows, columns, cells, screen, sink).Draw();
}

void DrawTable(const Rows& rows, const Screen& screen, Sink& sink) {
    const Cells cells = [&](std::size_t row, std::size_t column, Buffer&) {
        return std::string_view(rows[row][column]);
    };
    DrawTable(rows.size(), rows.front().size(), cells, screen, sink);
}

}  // namespace dataengine::tool
