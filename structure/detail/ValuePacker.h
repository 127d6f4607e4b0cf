#pragma once

#include <VxUtil/vxJson.h>
#include <rapidjson/document.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "contracts/detail/JsonValues.h"

namespace dataengine::detail {

/// Appends packed values to a string:
///
///   null, boolean   nil, true, false
///   integer         the narrowest form
///   double          float64, also if whole; NaN and the infinities as nil
///   string          str
///   binary          bin
///   array, object   array, map with str keys
///
/// The string is complete when the packer is destroyed; after an exception it ends in part of a
/// value. Depth is bounded by memory only.
class ValuePacker {
  public:
    explicit ValuePacker(std::string& bytes)
        : bytes_(bytes), next_(bytes_.data() + bytes_.size()), end_(next_) {}
    ValuePacker(const ValuePacker&) = delete;
    ~ValuePacker() { bytes_.resize(Size()); }

    void Nil() { Byte(0xc0); }
    void Bool(bool value) { Byte(value ? 0xc3 : 0xc2); }
    void Unsigned(std::uint64_t number) {
        if (number < 0x80) return Byte(static_cast<unsigned>(number));
        Number(0xcc + WidthOf(number), WidthOf(number), number);
    }
    void Integer(std::int64_t number);
    void Double(double value);
    void Str(std::string_view bytes) {
        Length(0xa0, 32, 0xd9, 0, bytes.size());
        Packed(bytes);
    }
    void Bin(std::string_view bytes);
    void Array(std::size_t count) { Length(0x90, 16, 0xdb, 1, count); }
    void Map(std::size_t count) { Length(0x80, 16, 0xdd, 1, count); }

    /// Appends bytes that are already packed.
    void Packed(std::string_view bytes) {
        Reserve(bytes.size());
        std::memcpy(next_, bytes.data(), bytes.size());
        next_ += bytes.size();
    }

    /// Packs a value of a document. A double is packed so that it decodes to itself, if any float
    /// decodes to it.
    void Value(const rapidjson::Value& root);

    /// Packs a JSON value. Throws Error if `root` is a time or contains one.
    void Value(const vxJson::Value& root) { VisitValue(root, *this); }
    [[noreturn]] static void Time() { throw Error("a time has no packed form"); }

    /// Packs the value of a JSON text. Returns false if `text` is not JSON.
    bool JsonText(const char* text);

  private:
    /// The values of a container that are not yet packed. The members of an object are consecutive
    /// pairs of name and value.
    struct Range {
        const rapidjson::Value* next;
        const rapidjson::Value* end;
    };

    Range BeginArray(const rapidjson::Value& array);
    Range BeginObject(const rapidjson::Value& object);
    // Inlined into the walk, with only the growth out of line: a fifth less time.
    [[gnu::always_inline]] inline void Scalar(const rapidjson::Value& value);

    std::size_t Size() const { return static_cast<std::size_t>(next_ - bytes_.data()); }

    /// Ensures space for `count` bytes at `next_`.
    void Reserve(std::size_t count) {
        if (count > static_cast<std::size_t>(end_ - next_)) Grow(count);
    }
    [[gnu::noinline]] void Grow(std::size_t count);
    void Byte(unsigned byte) {
        Reserve(1);
        *next_++ = static_cast<char>(byte);
    }
    /// Returns the width of the narrowest form of `number`: 0 to 3 for 1, 2, 4 and 8 bytes.
    static unsigned WidthOf(std::uint64_t number) {
        return unsigned{number > 0xff} + unsigned{number > 0xffff} + unsigned{number > 0xffffffff};
    }

    /// Appends the code of a form and its number, 1, 2, 4 or 8 bytes with the highest first.
    void Number(unsigned code, unsigned width, std::uint64_t number) {
        const unsigned size = 1u << width;
        number <<= 64 - 8 * size;
        char bytes[sizeof number];
        for (unsigned i = 0; i < sizeof number; ++i)
            bytes[i] = static_cast<char>(number >> (56 - 8 * i));

        Reserve(1 + sizeof number);
        char* const head = next_;
        *head = static_cast<char>(code);
        std::memcpy(head + 1, bytes, sizeof bytes);
        next_ = head + 1 + size;
    }

    /// Appends the head of a string or container: in the short form, whose code holds the length,
    /// or with the length after the code, which counts up with the width.
    void Length(unsigned shortCode, std::size_t shortLimit, unsigned code, unsigned leastWidth,
                std::size_t length) {
        if (length < shortLimit) return Byte(shortCode | static_cast<unsigned>(length));
        const unsigned width = std::max(leastWidth, WidthOf(length));
        if (width > 2) throw Error("4 GiB or more have no packed form");
        Number(code + width, width, length);
    }

    // The string is kept larger than its content, which spares a call for each small write: the
    // interface table packs in a third less time.
    std::string& bytes_;
    char* next_;
    char* end_;
};

}  // namespace dataengine::detail
