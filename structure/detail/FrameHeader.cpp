#include "structure/detail/FrameHeader.h"

#include <cstdint>
#include <utility>

#include "contracts/detail/JsonValues.h"
#include "structure/detail/PackedBytes.h"
#include "structure/detail/PackedFormat.h"
#include "structure/detail/PackedPrinter.h"
#include "structure/detail/PackedWalk.h"
#include "structure/detail/SchemaBuilder.h"

namespace dataengine::detail {
namespace {

constexpr const char* kBadVersion = "version: byte 0: not a 32-bit integer";

int ReadVersion(PackedBytes& bytes) {
    const PackedHead& head = bytes.Head();
    if (head.kind != PackedKind::kInteger) {
        bytes.Skip();  // a malformed version throws another exception
        throw BadCast(kBadVersion);
    }
    const PackedInteger number = bytes.TakeInteger(head);
    const int version = static_cast<int>(number.bits);
    const bool fits =
        static_cast<std::uint64_t>(version) == number.bits && number.isNegative == (version < 0);
    if (!fits) throw BadCast(kBadVersion);
    return version;
}

std::string ReadName(PackedBytes& bytes, std::size_t offset) {
    const PackedHead& head = bytes.Head();
    if (head.kind != PackedKind::kStr && head.kind != PackedKind::kBin) {
        bytes.Skip();
        throw BadCast("name: byte " + std::to_string(offset) + ": neither a string nor a binary");
    }
    const std::uint64_t size = bytes.TakeLength(head);
    return std::string(bytes.TakeBytes(size), size);
}

vxJson::Value ReadSchema(PackedBytes& bytes) {
    const PackedBytes start = bytes;
    vxJson::Value built = NullValue();
    SchemaBuilder builder(built);
    if (PackedWalk(bytes, builder).Run()) return built;

    bytes = start;
    PackedPrinter printer(FloatStyle::kSixSignificant);
    PackedWalk(bytes, printer).Run();
    vxJson::Value parsed = NullValue();
    ParseValue(std::string(printer.Text()), parsed);
    return parsed;
}

}  // namespace

bool ReadHeader(std::string_view frame, std::string& name, vxJson::Value& schema,
                std::size_t& length) {
    PackedBytes bytes(frame.data(), frame.size());
    if (ReadVersion(bytes) != kFormatVersion) return false;
    name = ReadName(bytes, frame.size() - bytes.Remaining());
    vxJson::Value read = ReadSchema(bytes);
    length = frame.size() - bytes.Remaining();
    schema = std::move(read);
    return true;
}

}  // namespace dataengine::detail
