#include "structure/detail/PackedFault.h"

#include "structure/detail/MsgpackErrors.h"
#include "structure/detail/PackedBytes.h"

namespace dataengine::detail {
namespace {

const char* KindName(PackedKind kind) {
    switch (kind) {
        case PackedKind::kStr:
            return "string";
        case PackedKind::kBin:
            return "binary";
        case PackedKind::kExt:
            return "extension";
        case PackedKind::kArray:
            return "array";
        case PackedKind::kMap:
            return "map";
        default:
            return "number";
    }
}

std::string DescribeElement(const PackedBytes& bytes) {
    if (bytes.Remaining() == 0) return "the frame ends before a value";
    const PackedKind kind = bytes.PeekHead().kind;
    if (kind == PackedKind::kInvalid) return "0xc1 does not start a value";
    return std::string("the ") + KindName(kind) + " ends beyond the frame";
}

}  // namespace

std::string DescribeFault(std::string_view frame, std::size_t offset) {
    PackedBytes bytes(frame.data() + offset, frame.size() - offset);
    PackedBytes element = bytes;
    try {
        for (std::uint64_t count = 1; count != 0; --count) {
            element = bytes;
            count += bytes.SkipHead();
        }
    } catch (const msgpack::unpack_error&) {
        // `element` is the one that cannot be read.
    }
    const std::size_t at = frame.size() - element.Remaining();
    return "byte " + std::to_string(at) + ": " + DescribeElement(element);
}

}  // namespace dataengine::detail
