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

/// Returns whether `text` consists of printable ASCII characters, which need no care.
bool IsPlain(std::string_view text);

/// Returns whether `text` is UTF-8.
bool IsUtf8(std::string_view text);

/// Returns the number of columns that `text` takes on a terminal.
std::size_t WidthOf(std::string_view text);

/// Returns `text`, cut to `width` columns with an ellipsis if it is wider.
std::string Cut(std::string_view text, std::size_t width);

/// Returns `text` with escapes for control characters, marks that reorder text and bytes that are
/// not UTF-8, but for the character `kept`.
std::string Printable(std::string_view text, Content content = Content::kText, char kept = '\0');

/// Returns `bytes` as two hexadecimal digits each.
std::string HexOf(std::string_view bytes);

/// Returns `text` as a JSON string. Bytes that are not UTF-8 are kept.
std::string JsonString(std::string_view text);

}  // namespace dataengine::tool
