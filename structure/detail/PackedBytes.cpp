#include "structure/detail/PackedBytes.h"

namespace dataengine::detail {
namespace {

using Heads = std::array<PackedHead, 256>;

/// The head of a value whose first byte holds its number above `marker`.
constexpr PackedHead ShortHead(PackedKind kind, int marker) {
    return {kind, 1, 0, 56, 0, static_cast<std::int16_t>(-marker)};
}

/// The head of a value with a number of `width` bytes after the first byte.
constexpr PackedHead LongHead(PackedKind kind, int width) {
    return {kind, static_cast<std::uint8_t>(1 + width),
            1,    static_cast<std::uint8_t>(64 - 8 * width),
            0,    0};
}

constexpr void AddShortHeads(Heads& heads) {
    for (int byte = 0; byte < 256; ++byte) {
        PackedHead& head = heads[static_cast<std::size_t>(byte)];
        if (byte < 0x80) head = ShortHead(PackedKind::kInteger, 0);
        if (byte >= 0x80 && byte < 0x90) head = ShortHead(PackedKind::kMap, 0x80);
        if (byte >= 0x90 && byte < 0xa0) head = ShortHead(PackedKind::kArray, 0x90);
        if (byte >= 0xa0 && byte < 0xc0) head = ShortHead(PackedKind::kStr, 0xa0);
        if (byte >= 0xe0) head = ShortHead(PackedKind::kInteger, 0);
        if (byte >= 0xe0) head.sign = 1;
    }
    heads[0xc0] = ShortHead(PackedKind::kNil, 0);
    heads[0xc2] = heads[0xc3] = ShortHead(PackedKind::kBoolean, 0);
}

constexpr void AddExtHeads(Heads& heads) {
    for (int power = 0; power < 5; ++power) {
        const int first = 0xd4 + power;
        heads[static_cast<std::size_t>(first)] =
            ShortHead(PackedKind::kExt, first - (1 + (1 << power)));
    }
    for (std::size_t i = 0; i < 3; ++i) {
        heads[0xc7 + i] = LongHead(PackedKind::kExt, 1 << i);
        heads[0xc7 + i].offset = 1;
    }
}

constexpr Heads MakeHeads() {
    Heads heads{};
    AddShortHeads(heads);
    AddExtHeads(heads);
    heads[0xca] = LongHead(PackedKind::kFloat32, 4);
    heads[0xcb] = LongHead(PackedKind::kFloat64, 8);
    for (std::size_t i = 0; i < 4; ++i) {
        heads[0xcc + i] = heads[0xd0 + i] = LongHead(PackedKind::kInteger, 1 << i);
        heads[0xd0 + i].sign = 1;
    }
    for (std::size_t i = 0; i < 3; ++i) {
        heads[0xc4 + i] = LongHead(PackedKind::kBin, 1 << i);
        heads[0xd9 + i] = LongHead(PackedKind::kStr, 1 << i);
    }
    for (std::size_t i = 0; i < 2; ++i) {
        heads[0xdc + i] = LongHead(PackedKind::kArray, 2 << i);
        heads[0xde + i] = LongHead(PackedKind::kMap, 2 << i);
    }
    return heads;
}

}  // namespace

constexpr Heads kPackedHeads = MakeHeads();

void PackedBytes::Skip(std::uint64_t count) {
    for (; count != 0; --count) count += SkipHead();
}

std::uint64_t PackedBytes::SkipHead() {
    const PackedHead& head = Head();
    switch (head.kind) {
        case PackedKind::kStr:
        case PackedKind::kBin:
        case PackedKind::kExt:
            TakeBytes(TakeLength(head));
            return 0;
        case PackedKind::kArray:
            return TakeLength(head);
        case PackedKind::kMap:
            return 2 * TakeLength(head);
        default:
            next_ += head.size;
            return 0;
    }
}

void PackedBytes::ThrowInsufficientBytes() {
    throw msgpack::insufficient_bytes("insufficient bytes");
}

void PackedBytes::ThrowParseError() {
    throw msgpack::parse_error("parse error");
}

}  // namespace dataengine::detail
