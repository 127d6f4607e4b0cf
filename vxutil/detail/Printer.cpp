#include <array>
#include <charconv>
#include <cmath>
#include <ostream>

#include "vxutil/detail/Base64.h"
#include "vxutil/detail/Cursor.h"
#include "vxutil/detail/Hex.h"

namespace vxJson::detail {

namespace {

// The form of each byte in a JSON string: 0 for the byte itself, 'u' for \u00XX, any other
// character for that character after a backslash.
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
constexpr std::array<char, 256> kEscapes = MakeEscapes();

/// Collects text, with a spare capacity that callers write to directly.
class TextBuffer {
  public:
    void Put(char c) {
        Reserve(1);
        *at_++ = c;
    }

    void Put(std::string_view text) {
        Reserve(text.size());
        at_ = std::copy(text.begin(), text.end(), at_);
    }

    /// Appends up to `count` bytes: `write` receives the address of the first one and returns the
    /// end.
    template <typename Write>
    void PutUpTo(std::size_t count, Write write) {
        Reserve(count);
        at_ = write(at_);
    }

    /// Returns the last character; there must be one.
    char Last() const { return at_[-1]; }

    std::string Take() {
        text_.resize(Size());
        return std::move(text_);
    }

  private:
    std::size_t Size() const { return static_cast<std::size_t>(at_ - text_.data()); }

    void Reserve(std::size_t count) {
        if (static_cast<std::size_t>(end_ - at_) < count) Grow(count);
    }

    void Grow(std::size_t count) {
        const std::size_t size = Size();
        text_.resize(2 * size + count + 64);
        at_ = text_.data() + size;
        end_ = text_.data() + text_.size();
    }

    std::string text_;
    char* at_ = text_.data();
    char* end_ = at_;
};

}  // namespace

/// Prints values with an explicit stack, so that only memory limits their depth.
class Printer {
  public:
    explicit Printer(bool styled) : styled_(styled) {}

    std::string Print(const Value& root) {
        PutValue(root);
        while (!open_.empty()) {
            Cursor& top = open_.back();
            if (top.IsAtEnd()) {
                Close(top.IsInObject() ? '}' : ']');
                open_.pop_back();
                continue;
            }
            if (top.IsInObject()) {
                PutKey(top.GetKey());
            } else {
                StartChild();
            }
            const Value& child = top.GetValue();
            top.Advance();
            PutValue(child);
        }
        return text_.Take();
    }

  private:
    // Opens a container that has children; prints any other value completely.
    void PutValue(const Value& value) {
        switch (value.tag_) {
            case Value::Tag::boolean:
                return text_.Put(value.plain_.boolean ? "true" : "false");
            case Value::Tag::negative:
                return PutInteger(value.plain_.signedNumber);
            case Value::Tag::natural:
                return PutInteger(value.plain_.unsignedNumber);
            case Value::Tag::real:
                return PutDouble(value.plain_.real);
            case Value::Tag::string:
                return PutString(value.text_);
            case Value::Tag::binary:
                return PutBinary(value.text_);
            case Value::Tag::time:
                return PutTime(value.plain_.signedNumber);
            case Value::Tag::array:
            case Value::Tag::object:
                return PutContainer(*value.plain_.container);
            default:
                return text_.Put("null");
        }
    }

    void PutContainer(const Container& container) {
        const Cursor cursor(container);
        if (cursor.IsAtEnd()) return text_.Put(cursor.IsInObject() ? "{}" : "[]");
        open_.push_back(cursor);
        Open(cursor.IsInObject() ? '{' : '[');
    }

    void Open(char bracket) {
        text_.Put(bracket);
        ++depth_;
    }

    void Close(char bracket) {
        --depth_;
        if (styled_) PutNewLine();
        text_.Put(bracket);
    }

    void StartChild() {
        // A bracket is the last character only before the first child.
        if (text_.Last() != '{' && text_.Last() != '[') text_.Put(',');
        if (styled_) PutNewLine();
    }

    void PutKey(std::string_view key) {
        StartChild();
        PutString(key);
        text_.Put(':');
        if (styled_) text_.Put(' ');
    }

    // The limit keeps the text of deeply nested values in proportion to the value.
    void PutNewLine() {
        constexpr std::size_t kDeepestIndent = 20;
        const std::size_t width = 4 * std::min(depth_, kDeepestIndent);
        text_.Put('\n');
        text_.PutUpTo(width, [width](char* at) { return std::fill_n(at, width, ' '); });
    }

    template <typename Integer>
    void PutInteger(Integer number) {
        constexpr std::size_t kLongest = 20;
        text_.PutUpTo(kLongest,
                      [number](char* at) { return std::to_chars(at, at + kLongest, number).ptr; });
    }

    // Prints the shortest text that reads back as the same double, with an exponent where there
    // would be many zeros.
    void PutDouble(double number) {
        if (!std::isfinite(number)) return text_.Put("null");
        const double size = std::fabs(number);
        const bool isPlain = size == 0 || (size >= 1e-6 && size < 1e21);
        // A sign, "0.00000" and 17 digits.
        constexpr std::size_t kLongest = 25;
        text_.PutUpTo(kLongest, [=](char* at) {
            const auto format = isPlain ? std::chars_format::fixed : std::chars_format::scientific;
            char* end = std::to_chars(at, at + kLongest, number, format).ptr;
            if (isPlain && std::find(at, end, '.') == end) {
                *end++ = '.';
                *end++ = '0';
            }
            return end;
        });
    }

    void PutString(std::string_view string) {
        text_.Put('"');
        const char* run = string.data();
        const char* const end = run + string.size();
        for (const char* at = run; at != end; ++at) {
            const auto byte = static_cast<unsigned char>(*at);
            if (kEscapes[byte] == 0) continue;
            text_.Put({run, static_cast<std::size_t>(at - run)});
            PutEscaped(byte);
            run = at + 1;
        }
        text_.Put({run, static_cast<std::size_t>(end - run)});
        text_.Put('"');
    }

    void PutEscaped(unsigned char byte) {
        text_.Put('\\');
        text_.Put(kEscapes[byte]);
        if (kEscapes[byte] != 'u') return;
        const char digit = vxutil::kHexDigits[byte & 15];
        text_.Put(byte < 0x10 ? "000" : "001");
        text_.Put(digit < 'a' ? digit : static_cast<char>(digit - 'a' + 'A'));
    }

    void PutBinary(const std::string& bytes) {
        StartForm("$binary", "base64");
        const std::size_t length = Base64Length(bytes.size());
        text_.PutUpTo(length, [&bytes, length](char* at) {
            EncodeBase64(bytes, at);
            return at + length;
        });
        text_.Put('"');
        PutKey("subType");
        text_.Put("\"00");
        EndForm();
    }

    void PutTime(std::int64_t milliseconds) {
        StartForm("$date", "$numberLong");
        PutInteger(milliseconds);
        EndForm();
    }

    // Prints a form of Extended JSON up to the text of its first member, and after that of its
    // last.
    void StartForm(std::string_view key, std::string_view member) {
        Open('{');
        PutKey(key);
        Open('{');
        PutKey(member);
        text_.Put('"');
    }
    void EndForm() {
        text_.Put('"');
        Close('}');
        Close('}');
    }

    const bool styled_;
    TextBuffer text_;
    std::size_t depth_ = 0;
    std::vector<Cursor> open_;
};

}  // namespace vxJson::detail

namespace vxJson {

std::string Value::toString(bool flag) const {
    return detail::Printer(flag).Print(*this);
}

std::string Value::toStyledString() const {
    return toString(true);
}

std::ostream& operator<<(std::ostream& output, const Value& value) {
    return output << value.toString(false);
}

}  // namespace vxJson
