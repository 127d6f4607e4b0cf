#pragma once

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "structure/detail/CheckingVisitor.h"

namespace dataengine {

/// Prints a packed object as text, the way schemas have always gone to the JSON reader:
///
///   nil, boolean   null, true, false
///   integer        in decimal
///   float          in general format with 6 significant digits
///   str            quoted; quotation mark, backslash, slash and control bytes escaped
///   bin            quoted, its bytes as they are
///   array, map     [a, b] and {key:value, key:value}
///   ext            EXT
///
/// The text is JSON where the object is, and else the reader's to refuse.
class SchemaPrinter : public CheckingVisitor {
  public:
    /// The text so far.
    std::string_view Text() const { return {buffer_.data(), size_}; }

    bool visit_nil() { return Put("null"); }
    bool visit_boolean(bool value) { return Put(value ? "true" : "false"); }
    bool visit_positive_integer(std::uint64_t value) { return PutNumber(value); }
    bool visit_negative_integer(std::int64_t value) { return PutNumber(value); }
    bool visit_float32(float value) { return visit_float64(static_cast<double>(value)); }
    bool visit_float64(double value) { return PutNumber(value, std::chars_format::general, 6); }
    bool visit_str(const char* bytes, std::uint32_t size);
    bool visit_bin(const char* bytes, std::uint32_t size) {
        Put("\"");
        Put({bytes, size});
        return Put("\"");
    }
    bool visit_ext(const char*, std::uint32_t) { return Put("EXT"); }

    bool start_array(std::uint32_t) { return Put("["); }
    bool start_array_item() { return Separate('['); }
    bool end_array() { return Put("]"); }
    bool start_map(std::uint32_t) { return Put("{"); }
    bool start_map_key() { return Separate('{'); }
    bool end_map_key() { return Put(":"); }
    bool end_map() { return Put("}"); }

  private:
    /// Makes room for `count` more bytes and returns where they go.
    char* Room(std::size_t count) {
        if (buffer_.size() - size_ < count) buffer_.resize(2 * buffer_.size() + count + 256);
        return &buffer_[size_];
    }
    void TakeUntil(const char* end) { size_ = static_cast<std::size_t>(end - buffer_.data()); }

    bool Put(std::string_view text) {
        char* const at = Room(text.size());
        TakeUntil(std::copy(text.begin(), text.end(), at));
        return true;
    }
    /// No value's text ends in an opening bracket, so one can only belong to the container itself.
    bool Separate(char opening) { return buffer_[size_ - 1] == opening || Put(", "); }
    template <typename... Arguments>
    bool PutNumber(Arguments... arguments) {
        constexpr std::size_t kLongest = 32;
        char* const at = Room(kLongest);
        TakeUntil(std::to_chars(at, at + kLongest, arguments...).ptr);
        return true;
    }

    std::string buffer_;  // larger than the text in it
    std::size_t size_ = 0;
};

}  // namespace dataengine
