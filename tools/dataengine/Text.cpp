#include "tools/dataengine/Text.h"

#include <VxUtil/vxJson.h>

#include <algorithm>
#include <clocale>
#include <cwchar>

namespace dataengine::tool {
namespace {

/// One character of a string.
struct Glyph {
    std::string_view bytes;
    char32_t code;  // 0xfffd for a byte that is not UTF-8
    int width;      // in columns of a terminal; negative if it must be escaped
};

/// Returns whether a character is invisible or changes the direction of the text around it.
bool IsFormatMark(wchar_t c) {
    return c == 0x061c || (c >= 0x200b && c <= 0x200f) || (c >= 0x2028 && c <= 0x202e) ||
           (c >= 0x2060 && c <= 0x206f) || c == 0xfeff;
}

/// Takes the first character of `text`, which is not empty.
Glyph TakeGlyph(std::string_view& text) {
    wchar_t c = static_cast<unsigned char>(text.front());
    std::size_t size = 1;
    int width = 1;
    if (c < ' ' || c > '~') {
        // Set on first use: most runs meet ASCII only, and loading a locale takes time.
        static const bool hasLocale = std::setlocale(LC_CTYPE, "C.UTF-8") != nullptr;
        std::mbstate_t state = {};
        size = hasLocale ? std::mbrtowc(&c, text.data(), text.size(), &state) : text.npos;
        const bool isValid = size <= text.size();
        if (!isValid) c = 0xfffd;
        width = isValid && c != 0 && !IsFormatMark(c) ? wcwidth(c) : -1;
        size = isValid && size > 0 ? size : 1;
    }
    const Glyph glyph{text.substr(0, size), static_cast<char32_t>(c), width};
    text.remove_prefix(size);
    return glyph;
}

std::string EscapeOf(const Glyph& glyph, Content content) {
    std::string escape;
    if (content == Content::kJson) {
        const auto put = [&](char32_t unit) {
            const char bytes[] = {static_cast<char>(unit >> 8), static_cast<char>(unit)};
            escape += "\\u" + HexOf({bytes, 2});
        };
        if (glyph.code >= 0x10000) put(0xd7c0 + (glyph.code >> 10));
        put(glyph.code < 0x10000 ? glyph.code : 0xdc00 + (glyph.code & 0x3ff));
    } else if (const auto known = std::string_view("\n\r\t").find(glyph.bytes); known < 3) {
        escape = std::string("\\") + "nrt"[known];
    } else {
        for (const char byte : glyph.bytes) escape += "\\x" + HexOf({&byte, 1});
    }
    return escape;
}

}  // namespace

bool IsPlain(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

bool IsUtf8(std::string_view text) {
    if (IsPlain(text)) return true;
    while (!text.empty()) {
        const Glyph glyph = TakeGlyph(text);
        if (glyph.code == 0xfffd && glyph.bytes.size() == 1) return false;
    }
    return true;
}

std::size_t WidthOf(std::string_view text) {
    if (IsPlain(text)) return text.size();
    std::size_t width = 0;
    while (!text.empty()) width += static_cast<std::size_t>(std::max(TakeGlyph(text).width, 0));
    return width;
}

std::string Cut(std::string_view text, std::size_t width) {
    if (WidthOf(text) <= width) return std::string(text);
    std::string_view rest = text;
    std::size_t taken = 1;  // the ellipsis
    for (;;) {
        const Glyph glyph = TakeGlyph(rest);
        taken += static_cast<std::size_t>(std::max(glyph.width, 0));
        if (taken > width)
            return std::string(text.substr(0, text.size() - rest.size() - glyph.bytes.size())) +
                   "…";
    }
}

std::string Printable(std::string_view text, Content content, char kept) {
    if (IsPlain(text)) return std::string(text);
    std::string printable;
    while (!text.empty()) {
        const Glyph glyph = TakeGlyph(text);
        const bool isKept = glyph.width >= 0 || (kept != '\0' && glyph.bytes[0] == kept);
        printable += isKept ? std::string(glyph.bytes) : EscapeOf(glyph, content);
    }
    return printable;
}

std::string HexOf(std::string_view bytes) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const char byte : bytes) text += {kDigits[(byte >> 4) & 15], kDigits[byte & 15]};
    return text;
}

std::string JsonString(std::string_view text) {
    return vxJson::Value(std::string(text)).toString(false);
}

}  // namespace dataengine::tool
