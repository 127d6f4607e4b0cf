#include "structure/detail/ValuePacker.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "documents/ParseJson.h"

namespace dataengine::detail {
namespace {

/// Parses numbers to the nearest double, which packing preserves. Returns false if `text` is not
/// JSON.
bool ParseExactly(const char* text, rapidjson::Value& value, JsonPool& pool) {
    return !ParseJson<rapidjson::kParseFullPrecisionFlag>(text, value, pool).IsError();
}

/// Returns the double that a float64 decodes to, or NaN if it decodes to null.
double Decoded(double value) {
    char text[320];  // the greatest double has 309 integer digits
    *std::to_chars(text, text + sizeof text - 1, value, std::chars_format::fixed, 2).ptr = '\0';
    JsonPool pool;
    rapidjson::Value parsed;
    if (ParseJson(text, parsed, pool).IsError()) return std::numeric_limits<double>::quiet_NaN();
    return parsed.GetDouble();
}

/// Returns a double that decodes to `wanted`, or `wanted` if there is none.
///
/// Doubles of two decimals decode to themselves as long as the parser accumulates their digits in
/// an integer. It accumulates the later digits of longer texts in a double, which is then off by up
/// to two units in the last place for each digit, so the double to pack is searched for nearby.
double DecodingTo(double wanted) {
    constexpr double kExact = 9e13;  // below 2^53 / 100
    if (!(std::fabs(wanted) >= kExact) || std::isinf(wanted)) return wanted;

    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const int reach = 2 * static_cast<int>(std::log10(std::fabs(wanted)));
    double above = wanted;
    double below = wanted;
    for (int i = 0; i <= reach; ++i) {
        if (std::isfinite(above) && Decoded(above) == wanted) return above;
        if (std::isfinite(below) && Decoded(below) == wanted) return below;
        above = std::nextafter(above, kInfinity);
        below = std::nextafter(below, -kInfinity);
    }
    return wanted;
}

}  // namespace

void ValuePacker::Grow(std::size_t count) {
    constexpr std::size_t kStep = 512;
    const std::size_t size = Size();
    bytes_.resize(size + count + kStep);
    next_ = bytes_.data() + size;
    end_ = bytes_.data() + bytes_.size();
}

void ValuePacker::Integer(std::int64_t number) {
    if (number >= 0) return Unsigned(static_cast<std::uint64_t>(number));
    const auto bits = static_cast<std::uint64_t>(number);
    if (number >= -0x20) return Byte(static_cast<unsigned char>(bits));
    const unsigned width = WidthOf(~bits << 1);  // the sign takes a bit
    Number(0xd0 + width, width, bits);
}

void ValuePacker::Double(double value) {
    if (!std::isfinite(value)) return Nil();
    std::uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    Number(0xcb, 3, bits);
}

void ValuePacker::Bin(std::string_view bytes) {
    Length(0, 0, 0xc4, 0, bytes.size());
    Packed(bytes);
}

void ValuePacker::Scalar(const rapidjson::Value& value) {
    switch (value.GetType()) {
        case rapidjson::kStringType:
            return Str({value.GetString(), value.GetStringLength()});
        case rapidjson::kNumberType:
            if (value.IsUint64())
                Unsigned(value.GetUint64());
            else if (value.IsInt64())
                Integer(value.GetInt64());
            else
                Double(value.GetDouble());
            return;
        case rapidjson::kNullType:
            return Nil();
        default:
            return Bool(value.GetBool());
    }
}

void ValuePacker::Value(const rapidjson::Value& root) {
    std::vector<Range> around;
    Range range = {&root, &root + 1};
    for (;;) {
        while (range.next != range.end) {
            const rapidjson::Value& value = *range.next++;
            if (value.IsDouble()) {
                Double(DecodingTo(value.GetDouble()));
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

bool ValuePacker::JsonText(const char* text) {
    JsonPool pool;
    rapidjson::Value value;
    if (!ParseExactly(text, value, pool)) return false;
    Value(value);
    return true;
}

}  // namespace dataengine::detail
