#pragma once

#include <VxUtil/vxJson.h>
#include <rapidjson/document.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>

#include "contracts/detail/JsonValues.h"
#include "structure/detail/ByteBuffer.h"

namespace dataengine::detail {

/// Throws Error if `size` is more than the bytes that a frame may have.
inline void RequireFrameSize(std::size_t size) {
    if (size > std::numeric_limits<int>::max()) throw Error("the frame exceeds 2147483647 bytes");
}

/// Appends packed values to a buffer:
///
///   null, boolean   nil, true, false
///   integer         the narrowest form
///   double          float64, also if whole; NaN and the infinities as nil
///   string          str
///   binary          bin
///   array, object   array, map with str keys
///
/// After an exception the buffer ends in part of a value. Depth is bounded by memory only. Every
/// operation throws Error for a string or container that no frame has room for.
class ValuePacker {
  public:
    explicit ValuePacker(ByteBuffer& bytes) : bytes_(bytes) {}

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
    void Bin(std::string_view bytes) {
        Length(0, 0, 0xc4, 0, bytes.size());
        Packed(bytes);
    }
    void Array(std::size_t count) { Length(0x90, 16, 0xdb, 1, count); }
    void Map(std::size_t count) { Length(0x80, 16, 0xdd, 1, count); }
    [[noreturn]] static void Time() { throw Error("cannot pack a time"); }

    /// Appends bytes that are already packed.
    void Packed(std::string_view bytes) {
        char* const start = bytes_.Reserve(bytes.size());
        std::memcpy(start, bytes.data(), bytes.size());
        bytes_.SetEnd(start + bytes.size());
    }

    /// Packs a JSON value. Throws Error if `root` is a time or contains one.
    void Value(const vxJson::Value& root) { VisitValue(root, *this); }

    /// Packs a value of a document. A double becomes a float64 that decodes to it, or if there is
    /// none, a float64 that equals it.
    void Value(const rapidjson::Value& root);

    /// Packs a value so that a schema that holds it is read with this value: a double that six
    /// digits do not express, which is all that schemas keep of a float, becomes
    /// {"$numberDouble": str}.
    void SchemaValue(const rapidjson::Value& root);

  private:
    /// The values of a container that are not yet packed. The members of an object are consecutive
    /// pairs of name and value.
    struct Range {
        const rapidjson::Value* next;
        const rapidjson::Value* end;
    };

    template <typename PackDouble>
    void Walk(const rapidjson::Value& root, const PackDouble& packDouble);
    Range BeginArray(const rapidjson::Value& array);
    Range BeginObject(const rapidjson::Value& object);
    // Inlined into the walk: a fifth less time.
    [[gnu::always_inline]] inline void Scalar(const rapidjson::Value& value);
    void SchemaDouble(double value);

    void Byte(unsigned byte) {
        char* const start = bytes_.Reserve(1);
        *start = static_cast<char>(byte);
        bytes_.SetEnd(start + 1);
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

        char* const head = bytes_.Reserve(1 + sizeof number);
        *head = static_cast<char>(code);
        std::memcpy(head + 1, bytes, sizeof bytes);
        bytes_.SetEnd(head + 1 + size);
    }

    /// Appends the head of a string or container: in the short form, whose code holds the length,
    /// or with the length after the code, which counts up with the width.
    void Length(unsigned shortCode, std::size_t shortLimit, unsigned code, unsigned leastWidth,
                std::size_t length) {
        if (length < shortLimit) return Byte(shortCode | static_cast<unsigned>(length));
        RequireFrameSize(length);
        const unsigned width = std::max(leastWidth, WidthOf(length));
        Number(code + width, width, length);
    }

    ByteBuffer& bytes_;
};

}  // namespace dataengine::detail
