#pragma once

#include <cstddef>
#include <cstring>
#include <limits>
#include <new>
#include <string>

namespace dataengine::detail {

// The most that a rapidjson reader counts correctly: it adds the exponent of a number and the count
// of its decimal places in int, and counts the bytes of a string in 32 bits.
constexpr std::size_t kMaxExponentDigits = 8;
constexpr std::size_t kMaxNumberBytes = 100'000'000;
constexpr std::size_t kMaxStringBytes = std::numeric_limits<unsigned>::max() - 1;

inline std::size_t CountDigits(const char* text) {
    return std::strspn(text, "0123456789");
}

/// Returns whether `minus` points to the sign of an exponent with too many digits.
inline bool IsLargeExponent(const char* text, const char* minus) {
    if (minus == text || (minus[-1] != 'e' && minus[-1] != 'E')) return false;
    return CountDigits(minus + 1 + std::strspn(minus + 1, "0")) > kMaxExponentDigits;
}

/// Returns the end of the string that begins at `quote`.
inline const char* EndOfString(const char* quote) {
    const char* end = quote + 1;
    while (*(end += std::strcspn(end, "\"\\")) == '\\') end += end[1] == '\0' ? 1 : 2;
    if (static_cast<std::size_t>(end - quote) > kMaxStringBytes) throw std::bad_alloc();
    return *end == '\0' ? end : end + 1;
}

/// Copies `text` to `buffer`, unless it is there, and makes the exponent after `minus` smaller
/// without a change of its length.
inline void ShrinkExponent(const char* text, const char* minus, std::string& buffer) {
    if (buffer.empty()) buffer = text;
    const std::size_t digits = CountDigits(minus + 1);
    const std::size_t zeros = digits - kMaxExponentDigits;
    const auto begin = static_cast<std::size_t>(minus + 1 - text);
    buffer.replace(begin, digits, std::string(zeros, '0').append(kMaxExponentDigits, '9'));
}

/// Returns a text that a rapidjson reader reads without overflow, with the values of the
/// zero-terminated `text`, or its error at the same offset. That is `text` itself, or a copy in the
/// empty `buffer` with smaller exponents in place of large negative ones: both make a number zero.
///
/// Throws std::bad_alloc if memory runs out, or if a number or a string is longer than the reader
/// can count.
inline const char* ReadableText(const char* text, std::string& buffer) {
    bool isReadable = std::strlen(text) <= kMaxNumberBytes;
    for (const char* minus = text; isReadable && (minus = std::strchr(minus, '-')) != nullptr;)
        isReadable = !IsLargeExponent(text, minus++);
    if (isReadable) return text;

    for (const char* next = text; *(next += std::strcspn(next, "\"-0123456789")) != '\0';) {
        if (*next == '"') {
            next = EndOfString(next);
            continue;
        }
        const char* const end = next + std::strspn(next, "+-.0123456789eE");
        if (static_cast<std::size_t>(end - next) > kMaxNumberBytes) throw std::bad_alloc();
        for (; next != end; ++next)
            if (*next == '-' && IsLargeExponent(text, next)) ShrinkExponent(text, next, buffer);
    }
    return buffer.empty() ? text : buffer.c_str();
}

}  // namespace dataengine::detail
