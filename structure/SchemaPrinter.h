#pragma once

#include <charconv>
#include <cstdint>
#include <string>

#include "structure/CheckingVisitor.h"

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
    explicit SchemaPrinter(std::string& text) : text_(text) {}

    bool visit_nil() { return Put("null"); }
    bool visit_boolean(bool value) { return Put(value ? "true" : "false"); }
    bool visit_positive_integer(std::uint64_t value) { return PutNumber(value); }
    bool visit_negative_integer(std::int64_t value) { return PutNumber(value); }
    bool visit_float32(float value) { return visit_float64(static_cast<double>(value)); }
    bool visit_float64(double value) { return PutNumber(value, std::chars_format::general, 6); }
    bool visit_str(const char* bytes, std::uint32_t size);
    bool visit_bin(const char* bytes, std::uint32_t size) {
        text_ += '"';
        if (size != 0) text_.append(bytes, size);
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
    bool Put(const char* text) {
        text_ += text;
        return true;
    }
    /// No value's text ends in an opening bracket, so one can only belong to the container itself.
    bool Separate(char opening) {
        if (text_.back() != opening) text_ += ", ";
        return true;
    }
    template <typename... Arguments>
    bool PutNumber(Arguments... arguments) {
        char digits[32];
        const auto end = std::to_chars(digits, digits + sizeof digits, arguments...);
        text_.append(digits, end.ptr);
        return true;
    }

    std::string& text_;
};

}  // namespace dataengine
