#include "tools/dataengine/Text.h"

#include <algorithm>
#include <clocale>
#include <cwchar>

namespace dataengine::tool {
namespace {

/// Returns whether a character is invisible or changes the direction of the text around it.
bool IsFormatMark(wchar_t c) {
    return c == 0x061c || (c >= 0x200b && c <= 0x200f) || (c >= 0x2028 && c <= 0x202e) ||
           (c >= 0x2060 && c <= 0x206f) || c == 0xfeff;
}

std::string JsonEscape(char32_t code) {
    const auto unit = [](std::uint32_t value) {
        return "\\u" + HexOf(std::string{static_cast<char>(value >> 8), static_cast<char>(value)});
    };
    const auto value = static_cast<std::uint32_t>(code);
    if (value < 0x10000) return unit(value);
    return unit(0xd7c0 + (value >> 10)) + unit(0xdc00 + (value & 0x3ff));
}

std::string TextEscape(std::string_view bytes) {
    if (bytes == "\n") return "\\n";
    if (bytes == "\r") return "\\r";
    if (bytes == "\t") return "\\t";
    std::string text;
    for (const char byte : bytes) text += "\\x" + HexOf({&byte, 1});
    return text;
}

}  // namespace

Glyph FirstGlyph(std::string_view text) {
    const char first = text.front();
    if (first >= ' ' && first <= '~') return {text.substr(0, 1), static_cast<wchar_t>(first), 1};
    // Set on first use: most runs meet ASCII only, and loading a locale takes time.
    static const bool hasLocale = std::setlocale(LC_CTYPE, "C.UTF-8") != nullptr;
    wchar_t c = 0;
    std::mbstate_t state = {};
    const std::size_t size =
        hasLocale ? std::mbrtowc(&c, text.data(), text.size(), &state) : text.npos;
    if (size > text.size()) return {text.substr(0, 1), 0xfffd, -1};
    return {text.substr(0, std::max<std::size_t>(size, 1)), c, IsFormatMark(c) ? -1 : wcwidth(c)};
}

bool IsPlain(std::string_view text) {
    for (const char c : text)
        if (c < ' ' || c > '~') return false;
    return true;
}

bool IsUtf8(std::string_view text) {
    if (IsPlain(text)) return true;
    for (; !text.empty(); text.remove_prefix(FirstGlyph(text).bytes.size()))
        if (FirstGlyph(text).code == 0xfffd && text.front() != '\xef') return false;
    return true;
}

std::size_t WidthOf(std::string_view text) {
    if (IsPlain(text)) return text.size();
    std::size_t width = 0;
    for (; !text.empty(); text.remove_prefix(FirstGlyph(text).bytes.size()))
        width += static_cast<std::size_t>(std::max(FirstGlyph(text).width, 0));
    return width;
}

std::string Cut(std::string_view text, std::size_t width) {
    if (text.size() <= width || WidthOf(text) <= width) return std::string(text);
    std::size_t size = 0;
    std::size_t taken = 1;  // the ellipsis
    for (;;) {
        const Glyph glyph = FirstGlyph(text.substr(size));
        taken += static_cast<std::size_t>(std::max(glyph.width, 0));
        if (taken > width) return std::string(text.substr(0, size)) + "…";
        size += glyph.bytes.size();
    }
}

std::string Printable(std::string_view text) {
    if (IsPlain(text)) return std::string(text);
    std::string printable;
    for (; !text.empty(); text.remove_prefix(FirstGlyph(text).bytes.size())) {
        const Glyph glyph = FirstGlyph(text);
        printable += glyph.width < 0 ? TextEscape(glyph.bytes) : std::string(glyph.bytes);
    }
    return printable;
}

std::string ForTerminal(std::string_view lines, Content content) {
    std::string safe;
    while (!lines.empty()) {
        const Glyph glyph = FirstGlyph(lines);
        if (glyph.width >= 0 || glyph.bytes == "\n") {
            safe += glyph.bytes;
        } else {
            safe += content == Content::kJson ? JsonEscape(static_cast<char32_t>(glyph.code))
                                              : TextEscape(glyph.bytes);
        }
        lines.remove_prefix(glyph.bytes.size());
    }
    return safe;
}

std::string HexOf(std::string_view bytes) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const char byte : bytes) text += {kDigits[(byte >> 4) & 15], kDigits[byte & 15]};
    return text;
}

}  // namespace dataengine::tool
