#include "structure/PackedFrameReader.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <utility>

#include "contracts/detail/JsonValues.h"
#include "structure/detail/DecodePlan.h"
#include "structure/detail/DocumentBuilder.h"
#include "structure/detail/FrameHeader.h"
#include "structure/detail/MsgpackErrors.h"
#include "structure/detail/PackedFault.h"
#include "structure/detail/PayloadLayout.h"

namespace dataengine {

using detail::Error;

namespace {

constexpr std::size_t kMostRemembered = std::size_t{1} << 20;
constexpr std::size_t kMostHeader = std::numeric_limits<int>::max();

/// Describes why the header of a frame cannot be read.
std::string DescribeHeaderFault(std::string_view frame) {
    detail::PackedBytes bytes(frame.data(), frame.size());
    for (const char* part : {"version", "name", "schema"}) {
        const std::size_t offset = frame.size() - bytes.Remaining();
        try {
            bytes.Skip();
        } catch (const msgpack::unpack_error&) {
            return part + (": " + detail::DescribeFault(frame, offset));
        }
    }
    return {};
}

/// A msgpack::type_error that says what is wrong.
class DescribedBadCast : public detail::BadCast {
  public:
    using BadCast::BadCast;
    const char* what() const noexcept override { return Description().c_str(); }
};

/// A header and what the selection comes to in its schema.
struct Header {
    std::string name;
    vxJson::Value schema = detail::NullValue();
    std::size_t length = 0;
    std::string bytes;  // empty if it is not remembered
    detail::DecodePlan plan;
    std::optional<detail::PayloadLayout> layout;  // once it was needed

    /// Reads the header of a frame. Returns false if it is of another version.
    bool Read(std::string_view frame, const vxJson::Value& selection) {
        try {
            if (!detail::ReadHeader(frame, name, schema, length)) return false;
        } catch (const msgpack::insufficient_bytes&) {
            throw msgpack::insufficient_bytes(DescribeHeaderFault(frame));
        } catch (const msgpack::parse_error&) {
            throw msgpack::parse_error(DescribeHeaderFault(frame));
        } catch (const detail::BadCast& error) {
            throw DescribedBadCast(error.Description());
        }
        if (length > kMostHeader) throw Error("the header exceeds 2147483647 bytes");
        if (length <= kMostRemembered) bytes = frame.substr(0, length);
        plan = detail::DecodePlan(schema, selection);
        return true;
    }

    bool Begins(std::string_view frame) const {
        return !bytes.empty() && frame.substr(0, bytes.size()) == bytes;
    }
};

}  // namespace

struct PackedFrameReader::State {
    vxJson::Value selection = detail::NullValue();
    std::optional<std::uint64_t> limit;
    Header header;
    Header none;  // what callers see while no frame is open
    bool isOpen = false;
    std::string_view frame;

    const Header& Current() const { return isOpen ? header : none; }
    void RequireFrame() const {
        if (!isOpen) throw Error("no frame is open");
    }
    std::string_view Payload() const { return frame.substr(header.length); }
    const detail::PayloadLayout& Layout() {
        if (!header.layout) header.layout.emplace(header.schema);
        return *header.layout;
    }

    std::uint64_t Limit() const { return limit.value_or(4 * std::uint64_t{Payload().size()}); }

    /// Returns the result of `run`, which calls the builder. Describes its errors.
    template <typename Run>
    bool Build(const detail::DocumentBuilder& builder, const Run& run) const {
        try {
            return run();
        } catch (const msgpack::insufficient_bytes&) {
            if (builder.LimitReached())
                throw Error(builder.Path() + ": the limit of " + std::to_string(Limit()) +
                            " packed bytes is reached");
            throw msgpack::insufficient_bytes(DescribeFault(builder));
        } catch (const msgpack::parse_error&) {
            throw msgpack::parse_error(DescribeFault(builder));
        }
    }

    /// Describes why the value that a builder decoded last cannot be read.
    std::string DescribeFault(const detail::DocumentBuilder& builder) const {
        const std::int64_t at = std::int64_t{builder.Offset()} + static_cast<int>(header.length);
        const bool isInside = builder.Offset() >= 0 && at <= std::int64_t(frame.size());
        return builder.Path() + ": " +
               (isInside ? detail::DescribeFault(frame, static_cast<std::size_t>(at))
                         : "byte " + std::to_string(at) + ": the value begins outside the payload");
    }
};

PackedFrameReader::PackedFrameReader() : state_(std::make_unique<State>()) {}

PackedFrameReader::PackedFrameReader(const vxJson::Value& selection) : PackedFrameReader() {
    state_->selection = selection;
}

PackedFrameReader::PackedFrameReader(PackedFrameReader&& other) noexcept = default;
PackedFrameReader& PackedFrameReader::operator=(PackedFrameReader&& other) noexcept = default;
PackedFrameReader::~PackedFrameReader() = default;

bool PackedFrameReader::Open(std::string_view frame) {
    state_->isOpen = false;
    if (!state_->header.Begins(frame)) {
        Header header;
        if (!header.Read(frame, state_->selection)) return false;
        state_->header = std::move(header);
    }
    state_->frame = frame;
    state_->isOpen = true;
    return true;
}

const std::string& PackedFrameReader::Name() const {
    return state_->Current().name;
}

const vxJson::Value& PackedFrameReader::Schema() const {
    return state_->Current().schema;
}

int PackedFrameReader::HeaderLength() const {
    return static_cast<int>(state_->Current().length);
}

std::string_view PackedFrameReader::Payload() const {
    return state_->isOpen ? state_->Payload() : std::string_view();
}

bool PackedFrameReader::Decode(const vxJson::Value& offsets, rapidjson::Document& document) {
    state_->RequireFrame();
    if (!offsets.isArray()) return false;
    const std::string_view payload = state_->Payload();
    detail::DocumentBuilder builder(payload.data(), payload.size(), offsets, document,
                                    state_->Limit());
    return state_->Build(builder, [&] { return state_->header.plan.Run(builder); });
}

bool PackedFrameReader::DecodeTable(const std::string& name, const vxJson::Value& offsets,
                                    PackedTable& table) {
    state_->RequireFrame();
    if (!offsets.isArray()) return false;
    const std::string_view payload = state_->Payload();
    detail::TableBuilder builder(payload.data(), payload.size(), offsets, table, state_->Limit());
    return state_->Build(builder, [&] { return state_->header.plan.RunTable(name, builder); });
}

bool PackedFrameReader::DecodeTable(const std::string& name, PackedTable& table) {
    return DecodeTable(name, FindOffsets(), table);
}

bool PackedFrameReader::Decode(rapidjson::Document& document) {
    return Decode(FindOffsets(), document);
}

vxJson::Value PackedFrameReader::FindOffsets() const {
    state_->RequireFrame();
    return state_->Layout().FindOffsets(state_->frame, state_->header.length);
}

void PackedFrameReader::SetLimit(std::size_t bytes) {
    state_->limit = bytes;
}

}  // namespace dataengine
