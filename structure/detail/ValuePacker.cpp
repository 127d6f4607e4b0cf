#include "structure/detail/ValuePacker.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

#include "documents/ParseJson.h"

namespace dataengine {
namespace {

/// Parses numbers to the nearest double, which packing keeps.
bool ParseExactly(const char* text, rapidjson::Value& value, JsonPool& pool) {
    return !ParseJson<rapidjson::kParseFullPrecisionFlag>(text, value, pool).IsError();
}

/// The double that a float64 decodes to: its text with two decimals, parsed. NaN if none.
double Decoded(double value) {
    char text[320];  // the greatest double has 309 digits before the point
    *std::to_chars(text, text + sizeof text - 1, value, std::chars_format::fixed, 2).ptr = '\0';
    JsonPool pool;
    rapidjson::Value parsed;
    if (ParseJson(text, parsed, pool).IsError()) return std::numeric_limits<double>::quiet_NaN();
    return parsed.GetDouble();
}

/// Returns a double that decodes to `wanted`, or `wanted` if there is none.
///
/// Doubles of two decimals decode to themselves as long as the parser gathers their digits in an
/// integer. It gathers the later digits of longer texts in a double, which is then off by up to two
/// units in the last place for each digit, so the double to pack is found nearby.
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

/// The values of a container that are not yet packed. The members of an object are consecutive
/// pairs of name and value.
struct Range {
    const rapidjson::Value* next;
    const rapidjson::Value* end;
};

std::uint32_t SizeOf(std::string_view bytes) {
    const auto size = static_cast<std::uint32_t>(bytes.size());
    if (size != bytes.size()) throw WriterError("a string of 4 GiB or more has no packed form");
    return size;
}

}  // namespace

void ValuePacker::Str(std::string_view bytes) {
    packer_.pack_str(SizeOf(bytes));
    packer_.pack_str_body(bytes.data(), SizeOf(bytes));
}

void ValuePacker::Bin(std::string_view bytes) {
    packer_.pack_bin(SizeOf(bytes));
    packer_.pack_bin_body(bytes.data(), SizeOf(bytes));
}

/// The packer of msgpack-c would turn whole doubles into integers.
void ValuePacker::Double(double value) {
    if (!std::isfinite(value)) {
        packer_.pack_nil();
        return;
    }
    std::uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    char packed[9] = {'\xcb'};
    for (int i = 8; i > 0; --i, bits >>= 8) packed[i] = static_cast<char>(bits);
    output_.write(packed, sizeof packed);
}

void ValuePacker::Scalar(const rapidjson::Value& value) {
    if (value.IsString()) {
        Str({value.GetString(), value.GetStringLength()});
    } else if (value.IsUint64()) {
        packer_.pack_uint64(value.GetUint64());
    } else if (value.IsInt64()) {
        packer_.pack_int64(value.GetInt64());
    } else if (value.IsDouble()) {
        Double(value.GetDouble());
    } else if (value.IsBool()) {
        Bool(value.GetBool());
    } else {
        packer_.pack_nil();
    }
}

void ValuePacker::Value(const rapidjson::Value& root) {
    std::vector<Range> open = {{&root, &root + 1}};
    while (!open.empty()) {
        Range& top = open.back();
        if (top.next == top.end) {
            open.pop_back();
            continue;
        }
        const rapidjson::Value& value = *top.next++;
        if (value.IsArray()) {
            Array(value.Size());
            open.push_back({value.Begin(), value.End()});
        } else if (value.IsObject()) {
            const rapidjson::SizeType count = value.MemberCount();
            Map(count);
            if (count == 0) continue;
            const rapidjson::Value* first = &value.MemberBegin()->name;
            open.push_back({first, first + 2 * std::size_t{count}});
        } else if (value.IsDouble()) {
            Double(DecodingTo(value.GetDouble()));
        } else {
            Scalar(value);
        }
    }
}

/// The value prints itself as text, whose parsed form supplies what the value itself cannot be
/// asked for: the keys of objects, and which scalar kind it holds. Strings, binaries and containers
/// are taken from the value, so an object that looks like a printed binary stays an object.
void ValuePacker::Value(const vxJson::Value& root) {
    JsonPool pool;
    rapidjson::Value printed;
    if (!ParseExactly(root.toString(false).c_str(), printed, pool))
        throw WriterError("does not print as JSON");

    std::vector<PrintedContainer> open;
    Node(root, printed, open);
    while (!open.empty()) {
        PrintedContainer& top = open.back();
        if (top.position == top.count) {
            open.pop_back();
            continue;
        }
        const rapidjson::SizeType position = top.position++;
        if (top.printed.IsArray()) {
            Node(top.value[static_cast<int>(position)], top.printed[position], open);
        } else {
            const auto& [name, value] = top.printed.MemberBegin()[position];
            const std::string key(name.GetString(), name.GetStringLength());
            Str(key);
            Node(top.value[key], value, open);
        }
    }
}

void ValuePacker::Node(const vxJson::Value& value, const rapidjson::Value& printed,
                       std::vector<PrintedContainer>& open) {
    if (value.isArray() && printed.IsArray() && printed.Size() == value.size()) {
        Array(printed.Size());
        open.push_back({value, printed, printed.Size()});
    } else if (value.isObject() && printed.IsObject()) {
        Map(printed.MemberCount());
        open.push_back({value, printed, printed.MemberCount()});
    } else if (value.isString()) {
        Str(value.asString());
    } else if (printed.IsObject() && printed.HasMember("$date")) {
        throw WriterError("a time has no packed form");
    } else if (printed.IsObject() || printed.IsString()) {
        Bin(value.asBinary());
    } else {
        Scalar(printed);
    }
}

bool ValuePacker::JsonText(const char* text) {
    JsonPool pool;
    rapidjson::Value value;
    if (!ParseExactly(text, value, pool)) return false;
    Value(value);
    return true;
}

}  // namespace dataengine
