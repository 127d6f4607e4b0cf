#include "structure/detail/ValuePacker.h"

#include <charconv>
#include <cmath>
#include <string>
#include <vector>

#include "structure/detail/PackedPrinter.h"
#include "structure/detail/ValueDecoder.h"

namespace dataengine::detail {
namespace {

std::int64_t BitsOf(double value) {
    std::int64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

double FromBits(std::int64_t bits) {
    double value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

/// Returns the double that a float64 decodes to; the infinity of its sign if it decodes to null,
/// for being too large.
double Decoded(double value, JsonPool& pool) {
    ByteBuffer bytes;
    ValuePacker(bytes).Double(value);
    PackedBytes packed(bytes.Bytes().data(), bytes.Size());
    rapidjson::Value decoded;
    DecodeValue(packed, decoded, pool);
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    return decoded.IsNull() ? std::copysign(kInfinity, value) : decoded.GetDouble();
}

/// Returns a double that decodes to `wanted`, or `wanted` if there is none.
///
/// The parser accumulates the first digits of a text in an integer, and those after 2^53 or more in
/// a double, with an error for each. Below 2^53 / 10 every double to which any float64 decodes
/// decodes to itself. Below 1e16 the float64 is at most one unit in the last place away, but a
/// greater one may decode to a lesser double. From there on it is up to some tens of units away,
/// and nearly as many for neighbours: the search corrects each candidate by the error that it
/// shows, which takes about five steps.
double DecodingTo(double wanted) {
    constexpr double kExact = 9e14;
    constexpr double kOrdered = 1e16;
    if (!(std::fabs(wanted) >= kExact) || std::isinf(wanted)) return wanted;

    JsonPool pool;
    const std::int64_t target = BitsOf(wanted);  // bits count units in the last place
    const auto errorOf = [&](std::int64_t candidate) {
        return BitsOf(Decoded(FromBits(candidate), pool)) - target;
    };
    if (std::fabs(wanted) < kOrdered) {
        for (const int distance : {0, 1, -1}) {
            if (errorOf(target + distance) == 0) return FromBits(target + distance);
        }
        return wanted;
    }

    constexpr std::int64_t kReach = 1000;
    std::int64_t below = target - kReach;
    std::int64_t above = target + kReach;
    for (std::int64_t candidate = target; above - below > 1;) {
        const std::int64_t error = errorOf(candidate);
        if (error == 0) return FromBits(candidate);
        (error < 0 ? below : above) = candidate;
        candidate -= error;
        if (candidate <= below || candidate >= above) candidate = below + (above - below) / 2;
    }
    return wanted;
}

}  // namespace

void ValuePacker::Integer(std::int64_t number) {
    if (number >= 0) return Unsigned(static_cast<std::uint64_t>(number));
    const auto bits = static_cast<std::uint64_t>(number);
    if (number >= -0x20) return Byte(static_cast<unsigned char>(bits));
    const unsigned width = WidthOf(~bits << 1);  // the sign takes a bit
    Number(0xd0 + width, width, bits);
}

void ValuePacker::Double(double value) {
    if (!std::isfinite(value)) return Nil();
    Number(0xcb, 3, static_cast<std::uint64_t>(BitsOf(value)));
}

void ValuePacker::SchemaDouble(double value) {
    PackedPrinter printer(FloatStyle::kSixSignificant);
    printer.Float(value);
    const std::string_view read = printer.Text();
    double kept = 0;
    std::from_chars(read.data(), read.data() + read.size(), kept);
    // Without a point or an exponent it is read as an integer.
    if (kept == value && read.find_first_of(".e") != read.npos) return Double(value);

    char text[32];
    const char* const end = std::to_chars(text, text + sizeof text, value).ptr;
    Map(1);
    Str("$numberDouble");
    Str({text, static_cast<std::size_t>(end - text)});
}

void ValuePacker::Scalar(const rapidjson::Value& value) {
    switch (value.GetType()) {
        case rapidjson::kStringType:
            return Str({value.GetString(), value.GetStringLength()});
        case rapidjson::kNumberType:
            if (value.IsUint64()) return Unsigned(value.GetUint64());
            return Integer(value.GetInt64());
        case rapidjson::kNullType:
            return Nil();
        default:
            return Bool(value.GetBool());
    }
}

template <typename PackDouble>
void ValuePacker::Walk(const rapidjson::Value& root, const PackDouble& packDouble) {
    std::vector<Range> around;
    Range range = {&root, &root + 1};
    for (;;) {
        while (range.next != range.end) {
            const rapidjson::Value& value = *range.next++;
            if (value.IsDouble()) {
                packDouble(value.GetDouble());
            } else if (!value.IsArray() && !value.IsObject()) {
                Scalar(value);
            } else {
                around.push_back(range);
                range = value.IsArray() ? BeginArray(value) : BeginObject(value);
            }
        }
        if (around.empty()) return;
        range = around.back();
        around.pop_back();
    }
}

void ValuePacker::Value(const rapidjson::Value& root) {
    Walk(root, [this](double value) { Double(DecodingTo(value)); });
}

void ValuePacker::SchemaValue(const rapidjson::Value& root) {
    Walk(root, [this](double value) { SchemaDouble(value); });
}

ValuePacker::Range ValuePacker::BeginArray(const rapidjson::Value& array) {
    Array(array.Size());
    return {array.Begin(), array.End()};
}

ValuePacker::Range ValuePacker::BeginObject(const rapidjson::Value& object) {
    const rapidjson::SizeType count = object.MemberCount();
    Map(count);
    if (count == 0) return {nullptr, nullptr};
    const rapidjson::Value* first = &object.MemberBegin()->name;
    return {first, first + 2 * std::size_t{count}};
}

}  // namespace dataengine::detail
