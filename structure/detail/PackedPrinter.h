#pragma once

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string_view>

#include "structure/detail/ByteBuffer.h"
#include "structure/detail/PackedBytes.h"

namespace dataengine::detail {

/// The format of printed floats.
enum class FloatStyle {
    kTwoDecimals,    // 3.14, as in values
    kSixSignificant  // 3.14159, as in schemas
};

/// Prints a packed value as text, in the format that the JSON readers expect. A handler of
/// PackedWalk.
///
///   nil, boolean   null, true, false
///   integer        in decimal
///   float          in the given style
///   str            quoted; quotation mark, backslash, slash and control bytes escaped
///   bin            quoted, its bytes unchanged
///   array, map     [a, b] and {key:value, key:value}
///   ext            EXT
///
/// The text is JSON if the value maps to JSON; otherwise the reader rejects it.
class PackedPrinter {
  public:
    explicit PackedPrinter(FloatStyle style) : style_(style) {}

    /// Returns the text so far. The characters are followed by a zero byte.
    std::string_view Text() {
        *Reserve(1) = '\0';
        return buffer_.Bytes();
    }

    using Context = bool;  // unused: the printer keeps no state for a container

    std::uint64_t TakeScalars(PackedBytes&, std::uint64_t, bool) { return 0; }
    bool Element() { return Separate('['); }
    bool Key(PackedKind) { return Separate('{'); }
    bool Value() { return Put(":"); }

    bool Nil() { return Put("null"); }
    bool Boolean(bool value) { return Put(value ? "true" : "false"); }
    bool Integer(PackedInteger integer) {
        if (!integer.isNegative) return PutNumber(integer.bits);
        return PutNumber(static_cast<std::int64_t>(integer.bits));
    }
    bool Float(double value) {
        if (style_ == FloatStyle::kTwoDecimals)
            return PutNumber(value, std::chars_format::fixed, 2);
        return PutNumber(value, std::chars_format::general, 6);
    }
    bool Str(const char* bytes, std::size_t size);
    bool Bin(const char* bytes, std::size_t size) {
        return Put("\"") && Put({bytes, size}) && Put("\"");
    }
    bool Ext() { return Put("EXT"); }

    Context BeginArray(std::uint32_t) { return Put("["); }
    Context BeginMap(std::uint32_t) { return Put("{"); }
    void EndArray(Context) { Put("]"); }
    void EndMap(Context) { Put("}"); }

  private:
    char* Reserve(std::size_t count) { return buffer_.Reserve(count); }
    void SetEnd(const char* end) { buffer_.SetEnd(end); }

    bool Put(std::string_view text) {
        char* const at = Reserve(text.size());
        SetEnd(std::copy(text.begin(), text.end(), at));
        return true;
    }
    /// Separates elements. A value's text never ends in an opening bracket, so one at the end
    /// belongs to the container, and its first element follows.
    bool Separate(char opening) {
        return buffer_.Size() == 0 || buffer_.Bytes().back() == opening || Put(", ");
    }
    template <typename... Arguments>
    bool PutNumber(Arguments... arguments) {
        constexpr std::size_t kLongest = 320;  // the greatest double has 309 integer digits
        char* const at = Reserve(kLongest);
        SetEnd(std::to_chars(at, at + kLongest, arguments...).ptr);
        return true;
    }

    FloatStyle style_;
    ByteBuffer buffer_;
};

}  // namespace dataengine::detail
