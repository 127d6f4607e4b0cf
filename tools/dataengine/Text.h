#pragma once

#include <string>
#include <string_view>

namespace dataengine::tool {

/// What an output holds. It decides how a terminal is protected from it.
enum class Content {
    kSafe,    // nothing that a terminal must not get
    kText,    // escapes such as \x1b
    kJson,    // escapes such as \u001b
    kBinary,  // not printed on a terminal at all
};

/// One character of a string.
struct Glyph {
    std::string_view bytes;
    wchar_t code;  // 0xfffd for a byte that is not UTF-8
    int width;     // in columns of a terminal; negative if it must be escaped
};

/// Returns the first character of `text`, which is not empty. Control characters, marks that
/// reorder text and bytes that are not UTF-8 must be escaped.
Glyph FirstGlyph(std::string_view text);

/// Returns whether `text` consists of printable ASCII characters, which need no care.
bool IsPlain(std::string_view text);

/// Returns whether `text` is UTF-8.
bool IsUtf8(std::string_view text);

/// Returns the number of columns that `text` takes on a terminal.
std::size_t WidthOf(std::string_view text);

/// Returns `text`, cut to `width` columns with an ellipsis if it is wider.
std::string Cut(std::string_view text, std::size_t width);

/// Returns `text` with all characters escaped that a terminal must not get.
std::string Printable(std::string_view text);

/// Returns the lines of an output with all characters escaped that a terminal must not get, but for
/// line feeds.
std::string ForTerminal(std::string_view lines, Content content);

/// Returns `bytes` as two hexadecimal digits each.
std::string HexOf(std::string_view bytes);

}  // namespace dataengine::tool
