#pragma once

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "structure/detail/ByteBuffer.h"
#include "tools/dataengine/Commands.h"

namespace dataengine::tool {

/// A string to which small pieces are appended without a call each: a third less time for rows.
class Buffer : public detail::ByteBuffer {
  public:
    void operator+=(char c) {
        char* const at = Reserve(1);
        *at = c;
        SetEnd(at + 1);
    }
    void operator+=(std::string_view text) {
        char* const at = Reserve(text.size());
        SetEnd(std::copy(text.begin(), text.end(), at));
    }
    void Fill(std::size_t count) {
        char* const at = Reserve(count);
        SetEnd(std::fill_n(at, count, ' '));
    }
};

/// Text on its way to an output. It is written in pieces, so that it need not fit into memory.
class Sink {
  public:
    explicit Sink(std::function<void(std::string_view)> write) : write_(std::move(write)) {}

    Buffer text;

    /// Writes the text if there is much of it.
    void Check() {
        if (text.Size() >= kLarge) Flush();
    }
    void Flush() {
        write_(text.Bytes());
        text.Truncate(0);
    }

  private:
    static constexpr std::size_t kLarge = 1 << 20;
    std::function<void(std::string_view)> write_;
};

/// The properties of the output on which a table is drawn.
struct Screen {
    std::size_t width;  // in columns; unlimited for a pipe or a file
    bool color;

    /// Returns the screen for the output of a command. The width is COLUMNS, or else that of the
    /// terminal. By default, color is used on a terminal only, and not if NO_COLOR is set.
    static Screen Of(const Options& options);
};

/// The cells of a table. Row 0 is the header.
class Cells {
  public:
    virtual ~Cells() = default;
    virtual std::size_t Rows() const = 0;
    virtual std::size_t Columns() const = 0;
    virtual void Append(std::size_t row, std::size_t column, Buffer& text) const = 0;

    /// Returns the width of a cell without its text, if it is an integer and not in the header.
    virtual std::optional<std::size_t> IntegerWidth(std::size_t, std::size_t) const { return {}; }
};

/// Cells that are kept as strings.
struct StringCells : Cells {
    std::vector<std::vector<std::string>> rows;

    std::size_t Rows() const override { return rows.size(); }
    std::size_t Columns() const override { return rows.front().size(); }
    void Append(std::size_t row, std::size_t column, Buffer& text) const override {
        text += rows[row][column];
    }
};

/// Draws a table of aligned columns, with escapes for what a terminal must not get. Cells are cut
/// to the width of the screen; columns that do not fit side by side follow in further blocks, each
/// of which repeats the first column. On an unlimited screen, a cell wider than kWidestAligned
/// columns pushes the rest of its row to the right.
void DrawTable(const Cells& cells, const Screen& screen, Sink& sink);
constexpr std::size_t kWidestAligned = 100;

}  // namespace dataengine::tool
