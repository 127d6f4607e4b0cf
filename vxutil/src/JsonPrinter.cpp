#include <rapidjson/prettywriter.h>
#include <rapidjson/writer.h>

#include <array>
#include <charconv>
#include <cmath>
#include <ostream>

#include "Base64.h"
#include "JsonContainers.h"
#include "documents/RapidJsonAllocator.h"

namespace vxJson::detail {

namespace {

// How each byte stands in a JSON string: 0 as itself, 'u' as \u00XX, else behind a backslash.
constexpr std::array<char, 256> MakeEscapes() {
    std::array<char, 256> escapes{};
    for (std::size_t i = 0; i < 0x20; ++i) escapes[i] = 'u';
    escapes['\b'] = 'b';
    escapes['\t'] = 't';
    escapes['\n'] = 'n';
    escapes['\f'] = 'f';
    escapes['\r'] = 'r';
    escapes['"'] = '"';
    escapes['\\'] = '\\';
    return escapes;
}
constexpr std::array<char, 256> escapes = MakeEscapes();

/// The output stream of the rapidjson writers. These set brackets, commas and indents; strings and
/// numbers are put in whole, since the writers go byte by byte and reserve six bytes for each byte
/// of a string, counted in 32 bits.
class TextStream {
  public:
    using Ch = char;

    void Put(char c) {
        Reserve(1);
        PutUnsafe(c);
    }
    void PutUnsafe(char c) { *at_++ = c; }
    void Flush() {}

    void Reserve(std::size_t count) {
        if (static_cast<std::size_t>(end_ - at_) < count) Grow(count);
    }

    void PutRun(const char* from, const char* to) {
        const auto length = static_cast<std::size_t>(to - from);
        Reserve(length);
        std::copy(from, to, at_);
        at_ += length;
    }

    void PutQuoted(std::string_view text) {
        Reserve(text.size() + 2);
        PutUnsafe('"');
        const char* run = text.data();
        const char* const end = run + text.size();
        for (const char* at = run; at != end; ++at) {
            const auto byte = static_cast<unsigned char>(*at);
            if (escapes[byte] == 0) continue;
            PutRun(run, at);
            PutEscaped(byte);
            run = at + 1;
        }
        PutRun(run, end);
        Put('"');
    }

    std::string Take() {
        text_.resize(Size());
        return std::move(text_);
    }

  private:
    std::size_t Size() const { return static_cast<std::size_t>(at_ - text_.data()); }

    void Grow(std::size_t count) {
        const std::size_t size = Size();
        text_.resize(2 * size + count + 64);
        at_ = text_.data() + size;
        end_ = text_.data() + text_.size();
    }

    void PutEscaped(unsigned char byte) {
        static const char digits[] = "0123456789ABCDEF";
        Reserve(6);
        PutUnsafe('\\');
        PutUnsafe(escapes[byte]);
        if (escapes[byte] != 'u') return;
        PutUnsafe('0');
        PutUnsafe('0');
        PutUnsafe(digits[byte >> 4]);
        PutUnsafe(digits[byte & 15]);
    }

    std::string text_;
    char* at_ = text_.data();
    char* end_ = at_;
};

// What rapidjson calls on a stream instead of its slower defaults.
inline void PutReserve(TextStream& stream, std::size_t count) {
    stream.Reserve(count);
}
inline void PutUnsafe(TextStream& stream, char c) {
    stream.PutUnsafe(c);
}

// Indentation. Its limit keeps the text of deeply nested values from growing with the square.
inline void PutN(TextStream& stream, char c, std::size_t count) {
    constexpr std::size_t widestIndent = 80;
    count = std::min(count, widestIndent);
    stream.Reserve(count);
    while (count-- > 0) stream.PutUnsafe(c);
}

using Utf8 = rapidjson::UTF8<>;
using CompactWriter = rapidjson::Writer<TextStream, Utf8, Utf8, dataengine::RapidJsonAllocator>;
using StyledWriter =
    rapidjson::PrettyWriter<TextStream, Utf8, Utf8, dataengine::RapidJsonAllocator>;

}  // namespace

class Printer {
  public:
    template <class Writer>
    static std::string Print(const Value& root) {
        TextStream text;
        Writer writer(text);
        std::vector<Cursor> open;
        const Value* value = &root;
        for (;;) {
            if (value->HoldsContainer()) {
                open.emplace_back(*value->plain_.container);
                open.back().InObject() ? writer.StartObject() : writer.StartArray();
            } else {
                PrintPlain(*value, writer, text);
            }
            for (; !open.empty() && open.back().AtEnd(); open.pop_back()) {
                open.back().InObject() ? writer.EndObject() : writer.EndArray();
            }
            if (open.empty()) return text.Take();
            Cursor& top = open.back();
            if (top.InObject()) PrintText(top.GetKey(), writer, text);
            value = &top.GetValue();
            top.Advance();
        }
    }

  private:
    template <class Writer>
    static void PrintPlain(const Value& value, Writer& writer, TextStream& text) {
        switch (value.tag_) {
            case Value::Tag::boolean:
                writer.Bool(value.plain_.boolean);
                break;
            case Value::Tag::negative:
                PrintNumber(value.plain_.signedNumber, writer, text);
                break;
            case Value::Tag::natural:
                PrintNumber(value.plain_.unsignedNumber, writer, text);
                break;
            case Value::Tag::real:
                PrintDouble(value.plain_.real, writer, text);
                break;
            case Value::Tag::string:
                PrintText(value.text_, writer, text);
                break;
            case Value::Tag::binary:
                PrintBinary(value.text_, writer, text);
                break;
            case Value::Tag::time:
                PrintTime(std::to_string(value.plain_.signedNumber), writer, text);
                break;
            default:
                writer.Null();
                break;
        }
    }

    // The longest numbers are a double without an exponent, a sign, "0.00000" and 17 digits, and an
    // integer, of twenty bytes.
    using Digits = std::array<char, 32>;

    // An empty raw value makes the writer set what goes before a value.
    template <class Number, class Writer>
    static void PrintNumber(Number number, Writer& writer, TextStream& text) {
        Digits digits;
        writer.RawValue("", 0, rapidjson::kNumberType);
        text.PutRun(digits.data(),
                    std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
    }

    // The shortest text that reads back as the same double, with an exponent where a reader would
    // have to count zeros.
    template <class Writer>
    static void PrintDouble(double number, Writer& writer, TextStream& text) {
        if (!std::isfinite(number)) {
            writer.Null();
            return;
        }
        const double size = std::fabs(number);
        const bool isPlain = size == 0 || (size >= 1e-6 && size < 1e21);
        Digits digits;
        char* end =
            std::to_chars(digits.data(), digits.data() + digits.size(), number,
                          isPlain ? std::chars_format::fixed : std::chars_format::scientific)
                .ptr;
        if (isPlain && std::find(digits.data(), end, '.') == end) {
            *end++ = '.';
            *end++ = '0';
        }
        writer.RawValue("", 0, rapidjson::kNumberType);
        text.PutRun(digits.data(), end);
    }

    template <class Writer>
    static void PrintText(std::string_view string, Writer& writer, TextStream& text) {
        writer.RawValue("", 0, rapidjson::kStringType);
        text.PutQuoted(string);
    }

    template <class Writer>
    static void PrintBinary(const std::string& bytes, Writer& writer, TextStream& text) {
        writer.StartObject();
        PrintText("$binary", writer, text);
        writer.StartObject();
        PrintText("base64", writer, text);
        PrintText(EncodeBase64(bytes), writer, text);
        PrintText("subType", writer, text);
        PrintText("00", writer, text);
        writer.EndObject();
        writer.EndObject();
    }

    template <class Writer>
    static void PrintTime(const std::string& milliseconds, Writer& writer, TextStream& text) {
        writer.StartObject();
        PrintText("$date", writer, text);
        writer.StartObject();
        PrintText("$numberLong", writer, text);
        PrintText(milliseconds, writer, text);
        writer.EndObject();
        writer.EndObject();
    }
};

}  // namespace vxJson::detail

namespace vxJson {

std::string Value::toString(bool flag) const {
    return flag ? toStyledString() : detail::Printer::Print<detail::CompactWriter>(*this);
}

std::string Value::toStyledString() const {
    return detail::Printer::Print<detail::StyledWriter>(*this);
}

std::ostream& operator<<(std::ostream& output, const Value& value) {
    return output << value.toString(false);
}

}  // namespace vxJson
