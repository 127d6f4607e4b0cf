#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "structure/detail/MsgpackErrors.h"

namespace dataengine::detail {

enum class PackedKind : std::uint8_t {
    kInvalid,
    kNil,
    kBoolean,
    kInteger,
    kFloat32,
    kFloat64,
    kStr,
    kBin,
    kExt,
    kArray,
    kMap
};

/// Describes how to read the values that begin with a particular byte.
///
/// A head is the first byte and the big-endian number after it: an integer, the bits of a float,
/// the size of a string or the count of a container. Where the first byte holds the number itself,
/// the number is that byte, and `offset` removes its marker bits.
struct PackedHead {
    PackedKind kind;
    std::uint8_t size;    // of the head in bytes
    std::uint8_t skip;    // from the first byte to the number: 0 or 1
    std::uint8_t shift;   // from the eight bytes at the number to the number
    std::uint8_t sign;    // 1 for an integer in two's complement
    std::int16_t offset;  // added to a size or count; counts the type byte of an ext
};

/// The heads by first byte.
extern const std::array<PackedHead, 256> kPackedHeads;

/// An integer of 64 bits, in two's complement if it is negative.
struct PackedInteger {
    std::uint64_t bits;
    bool isNegative;
};

/// Reads packed bytes from front to end, never beyond the end. Throws as msgpack::unpack does:
/// msgpack::insufficient_bytes if the bytes end within a value, msgpack::parse_error at a byte that
/// does not start a value.
class PackedBytes {
  public:
    static constexpr std::size_t kLongestHead = 9;
    static constexpr unsigned kLongestShortString = 31;

    PackedBytes(const char* bytes, std::size_t size) : next_(bytes), end_(bytes + size) {}

    const char* Next() const { return next_; }
    std::size_t Remaining() const { return static_cast<std::size_t>(end_ - next_); }

    /// Goes back to bytes that were taken before.
    void Rewind(const char* next) { next_ = next; }

    /// Returns the head of the next value, whose bytes are known to be complete: the Take functions
    /// may read them.
    const PackedHead& Head() const {
        if (next_ == end_) ThrowInsufficientBytes();
        const PackedHead& head = PeekHead();
        if (head.kind == PackedKind::kInvalid) ThrowParseError();
        if (head.size > Remaining()) ThrowInsufficientBytes();
        return head;
    }

    /// Returns the head of the next value unchecked. At least `kLongestHead` bytes must remain.
    const PackedHead& PeekHead() const { return kPackedHeads[FirstByte(next_)]; }

    void TakeNil() { ++next_; }
    bool TakeBoolean() { return (FirstByte(next_++) & 1) != 0; }

    PackedInteger TakeInteger(const PackedHead& head) {
        const std::uint64_t word = TakeWord(head);
        const std::uint64_t signBit = (std::uint64_t{head.sign} << 63) >> head.shift;
        const std::uint64_t bits = ((word >> head.shift) ^ signBit) - signBit;
        return {bits, (head.sign & (word >> 63)) != 0};
    }

    double TakeFloat(const PackedHead& head) {
        const std::uint64_t bits = TakeWord(head) >> head.shift;
        if (head.kind == PackedKind::kFloat64) return BitsAs<double>(bits);
        return static_cast<double>(BitsAs<float>(static_cast<std::uint32_t>(bits)));
    }

    /// Takes the head of a string, array or map, and returns its size or count.
    std::uint64_t TakeLength(const PackedHead& head) {
        return (TakeWord(head) >> head.shift) + static_cast<std::uint64_t>(head.offset);
    }

    /// Takes the bytes after the head of a string.
    const char* TakeBytes(std::uint64_t size) {
        if (size > Remaining()) ThrowInsufficientBytes();
        const char* const bytes = next_;
        next_ += size;
        return bytes;
    }

    // These require a complete float64, or a complete str of at most 31 bytes.
    double PeekFloat64() const { return BitsAs<double>(LoadWord(next_ + 1)); }
    void TakeFloat64() { next_ += 1 + sizeof(double); }
    bool NextIsShortString() const { return (FirstByte(next_) & 0xe0) == 0xa0; }
    unsigned TakeShortLength() { return FirstByte(next_++) & kLongestShortString; }

    /// Skips `count` whole values.
    void Skip(std::uint64_t count = 1);
    /// Skips a scalar, or the head of a container. Returns the number of values in the container.
    std::uint64_t SkipHead();

  private:
    static unsigned char FirstByte(const char* bytes) { return static_cast<unsigned char>(*bytes); }

    template <typename Float, typename Bits>
    static Float BitsAs(Bits bits) {
        static_assert(sizeof(Float) == sizeof(Bits));
        Float value;
        std::memcpy(&value, &bits, sizeof value);
        return value;
    }

    static std::uint64_t LoadWord(const char* bytes) {
        const auto byte = [bytes](int i) {
            return std::uint64_t{static_cast<unsigned char>(bytes[i])};
        };
        return byte(0) << 56 | byte(1) << 48 | byte(2) << 40 | byte(3) << 32 | byte(4) << 24 |
               byte(5) << 16 | byte(6) << 8 | byte(7);
    }

    /// Takes a head and returns the eight bytes at its number, with zeros beyond the end. A load of
    /// fixed size and a shift thus read numbers of all widths.
    std::uint64_t TakeWord(const PackedHead& head) {
        const char* number = next_ + head.skip;
        char padded[sizeof(std::uint64_t)] = {};
        if (Remaining() < kLongestHead) {
            std::memcpy(padded, number, static_cast<std::size_t>(head.size - head.skip));
            number = padded;
        }
        next_ += head.size;
        return LoadWord(number);
    }

    [[noreturn]] static void ThrowInsufficientBytes();
    [[noreturn]] static void ThrowParseError();

    const char* next_;
    const char* end_;
};

}  // namespace dataengine::detail
