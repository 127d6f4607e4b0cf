#include "tools/dataengine/Exact.h"

#include <VxUtil/vxJson.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include "structure/detail/MsgpackErrors.h"
#include "tools/dataengine/Text.h"

namespace dataengine::tool {
namespace {

using detail::PackedBytes;
using detail::PackedHead;
using detail::PackedKind;

std::string FloatText(double value, std::string_view bits) {
    std::array<char, 32> digits{};
    const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    std::string number(digits.data(), static_cast<std::size_t>(end - digits.data()));
    if (std::isnan(value)) {
        const std::string hex = HexOf(bits);
        number = hex == "7fc00000" || hex == "7ff8000000000000" ? "nan" : hex;
    }
    if (!std::isfinite(value)) {
        number = '"' + number + '"';
    } else if (number.find_first_of(".e") == number.npos) {
        number += ".0";
    }
    if (bits.size() == 4) return "{\"$float32\":" + number + "}";
    return std::isfinite(value) ? number : "{\"$float64\":" + number + "}";
}

/// Prints a value with an explicit stack of its open containers.
class ExactPrinter {
  public:
    ExactPrinter(PackedBytes& bytes, std::size_t limit) : bytes_(bytes), limit_(limit) {}

    Exact Print() {
        Scalar();
        while (!levels_.empty()) {
            Level& level = levels_.back();
            if (level.remaining == 0) {
                Put(!level.isMap ? "]" : level.hasPairs ? "]]}" : "}");
                levels_.pop_back();
            } else {
                const bool isKey = level.isMap && level.remaining % 2 == 0;
                Separate(level, isKey);
                --level.remaining;
                Scalar();
            }
        }
        return std::move(exact_);
    }

  private:
    struct Level {
        std::uint64_t remaining;  // elements, or keys and values
        bool isMap;
        bool isFirst = true;
        bool hasPairs = false;  // the members from here on are pairs in "$map"
    };

    /// Separates the next element, key or value from what is before it.
    void Separate(Level& level, bool isKey) {
        if (level.isMap && !isKey) return Put(level.hasPairs ? "," : ":");
        const bool isPlain = !isKey || IsPlainKey();
        if (level.hasPairs) return Put("],[");
        if (!std::exchange(level.isFirst, false)) Put(",");
        if (!isPlain) Put("\"$map\":[[");
        level.hasPairs = !isPlain;
    }

    /// Returns whether the key that follows can be the key of an object.
    bool IsPlainKey() {
        PackedBytes ahead = bytes_;
        const PackedHead& head = ahead.Head();
        if (head.kind != PackedKind::kStr && head.kind != PackedKind::kBin)
            MakeNull("a map key that is not a string");
        if (head.kind != PackedKind::kStr) return false;
        const std::string_view key = Take(ahead, ahead.TakeLength(head));
        return IsUtf8(key) && (key.empty() || key.front() != '$');
    }

    static std::string_view Take(PackedBytes& bytes, std::uint64_t size) {
        return {bytes.TakeBytes(size), static_cast<std::size_t>(size)};
    }

    /// Prints a scalar, or opens a container.
    void Scalar() {
        const PackedHead& head = bytes_.Head();
        switch (head.kind) {
            case PackedKind::kInteger: {
                const detail::PackedInteger number = bytes_.TakeInteger(head);
                return Put(number.isNegative
                               ? std::to_string(static_cast<std::int64_t>(number.bits))
                               : std::to_string(number.bits));
            }
            case PackedKind::kFloat32:
            case PackedKind::kFloat64: {
                const std::string_view bits(bytes_.Next() + 1, head.size - std::size_t{1});
                const double value = bytes_.TakeFloat(head);
                if (!std::isfinite(value)) MakeNull(std::isnan(value) ? "NaN" : "infinity");
                return Put(FloatText(value, bits));
            }
            case PackedKind::kStr:
            case PackedKind::kBin:
                return String(Take(bytes_, bytes_.TakeLength(head)),
                              head.kind == PackedKind::kStr ? "str" : "bin");
            case PackedKind::kExt: {
                const std::string_view data = Take(bytes_, bytes_.TakeLength(head));
                MakeNull("ext");
                return Put("{\"$ext\":[" + std::to_string(static_cast<signed char>(data[0])) +
                           ",\"" + HexOf(data.substr(1)) + "\"]}");
            }
            case PackedKind::kArray:
            case PackedKind::kMap: {
                const bool isMap = head.kind == PackedKind::kMap;
                levels_.push_back({bytes_.TakeLength(head) * (isMap ? 2 : 1), isMap});
                return Put(isMap ? "{" : "[");
            }
            case PackedKind::kBoolean:
                return Put(bytes_.TakeBoolean() ? "true" : "false");
            default:
                bytes_.TakeNil();
                return Put("null");
        }
    }

    void String(std::string_view text, const std::string& kind) {
        const auto isOdd = [](char c) {
            return c == '"' || c == '\\' || static_cast<unsigned char>(c) < ' ';
        };
        if (kind == "bin") exact_.hasOddBin |= std::any_of(text.begin(), text.end(), isOdd);
        if (exact_.text.size() > limit_) return;
        if (!IsUtf8(text)) return Put("{\"$" + kind + "Hex\":\"" + HexOf(text) + "\"}");
        const std::string quoted = ForTerminal(JsonString(text), Content::kJson);
        Put(kind == "str" ? quoted : "{\"$bin\":" + quoted + "}");
    }

    void Put(std::string_view text) {
        if (exact_.text.size() <= limit_) exact_.text += text;
    }
    /// Records why documents hold null for the whole value.
    void MakeNull(const char* reason) {
        if (exact_.nullReason.empty()) exact_.nullReason = reason;
    }

    PackedBytes& bytes_;
    std::size_t limit_;
    std::vector<Level> levels_;
    Exact exact_;
};

}  // namespace

Exact ReadExact(PackedBytes& bytes, std::size_t limit) {
    return ExactPrinter(bytes, limit).Print();
}

std::string JsonString(std::string_view text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') quoted += '\\';
        if (static_cast<unsigned char>(c) >= ' ') {
            quoted += c;
        } else {
            quoted += c == '\n' ? "\\n" : c == '\t' ? "\\t" : "\\u00" + HexOf({&c, 1});
        }
    }
    return quoted + '"';
}

namespace {

/// Appends to a string, for msgpack's packer.
struct Appender {
    std::string& bytes;
    void write(const char* data, std::size_t size) { bytes.append(data, size); }
};

std::string_view StringOf(const rapidjson::Value& value) {
    if (!value.IsString()) throw vxJson::Error("a \"$\" key is not followed by a string");
    return {value.GetString(), value.GetStringLength()};
}

/// Returns the bytes of hexadecimal digits.
std::string BytesOf(const rapidjson::Value& value) {
    const std::string_view hex = StringOf(value);
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
        unsigned byte = 0;
        const auto result = std::from_chars(&hex[i], &hex[i] + 2, byte, 16);
        if (result.ptr != &hex[i] + 2) break;
        bytes += static_cast<char>(byte);
    }
    if (2 * bytes.size() != hex.size())
        throw vxJson::Error("\"" + std::string(hex) + "\" is not hexadecimal");
    return bytes;
}

/// Packs a value with an explicit stack of its open containers.
class Packing {
  public:
    explicit Packing(std::string& bytes) : appender_{bytes}, packer_(appender_) {}

    void Pack(const rapidjson::Value& root) {
        Value(root);
        while (!levels_.empty()) {
            Level& level = levels_.back();
            const rapidjson::Value& container = level.container;
            const rapidjson::SizeType next = level.next++;
            if (container.IsArray() && next < container.Size()) {
                level.holdsPairs ? Pair(container[next]) : Value(container[next]);
            } else if (container.IsObject() && next < 2 * container.MemberCount()) {
                Member(container.MemberBegin()[next / 2], level);
            } else {
                levels_.pop_back();
            }
        }
    }

  private:
    struct Level {
        const rapidjson::Value& container;
        bool holdsPairs = false;       // the array of "$map"
        rapidjson::SizeType next = 0;  // counts names and values of an object
    };

    void Value(const rapidjson::Value& value) {
        if (value.IsArray()) {
            packer_.pack_array(value.Size());
            levels_.push_back({value});
        } else if (value.IsObject()) {
            Object(value);
        } else if (value.IsString()) {
            Str(StringOf(value));
        } else if (value.IsNull()) {
            packer_.pack_nil();
        } else if (value.IsBool()) {
            value.GetBool() ? packer_.pack_true() : packer_.pack_false();
        } else if (value.IsUint64()) {
            packer_.pack_uint64(value.GetUint64());
        } else if (value.IsInt64()) {
            packer_.pack_int64(value.GetInt64());
        } else {
            Float(value.GetDouble());
        }
    }

    void Object(const rapidjson::Value& object) {
        if (object.MemberCount() == 1 && Tagged(*object.MemberBegin())) return;
        std::size_t count = object.MemberCount();
        for (const auto& member : object.GetObject()) {
            const std::string_view name = StringOf(member.name);
            if (name == kMap && member.value.IsArray()) {
                count += member.value.Size() - std::size_t{1};
            } else if (!name.empty() && name.front() == '$') {
                throw vxJson::Error("\"" + std::string(name) +
                                    "\" is not the key of a packed value");
            }
        }
        packer_.pack_map(static_cast<std::uint32_t>(count));
        levels_.push_back({object});
    }

    void Member(const rapidjson::Value::Member& member, Level& level) {
        if (StringOf(member.name) != kMap) {
            Value(level.next % 2 == 1 ? member.name : member.value);
        } else if (level.next % 2 == 1) {
            levels_.push_back({member.value, true});
        }
    }

    void Pair(const rapidjson::Value& pair) {
        if (!pair.IsArray() || pair.Size() != 2) throw vxJson::Error("\"$map\" holds no pair");
        levels_.push_back({pair});
    }

    bool Tagged(const rapidjson::Value::Member& member) {
        const std::string_view tag = StringOf(member.name);
        const rapidjson::Value& value = member.value;
        if (tag == "$float32") {
            value.IsDouble() ? Float(static_cast<float>(value.GetDouble())) : Special<float>(value);
        } else if (tag == "$float64") {
            Special<double>(value);
        } else if (tag == "$bin") {
            Bin(StringOf(value));
        } else if (tag == "$binHex") {
            Bin(BytesOf(value));
        } else if (tag == "$strHex") {
            Str(BytesOf(value));
        } else if (tag == "$raw") {
            appender_.bytes += BytesOf(value);
        } else if (tag == "$ext") {
            Ext(value);
        } else {
            return false;
        }
        return true;
    }

    void Str(std::string_view text) {
        packer_.pack_str(static_cast<std::uint32_t>(text.size()));
        appender_.write(text.data(), text.size());
    }
    void Bin(std::string_view data) {
        packer_.pack_bin(static_cast<std::uint32_t>(data.size()));
        appender_.write(data.data(), data.size());
    }
    void Ext(const rapidjson::Value& value) {
        if (!value.IsArray() || value.Size() != 2 || !value[0].IsInt())
            throw vxJson::Error("\"$ext\" is not an array of type and bytes");
        const std::string data = BytesOf(value[1]);
        packer_.pack_ext(data.size(), static_cast<std::int8_t>(value[0].GetInt()));
        appender_.write(data.data(), data.size());
    }

    /// Packs a NaN or an infinity, or the bits of a float.
    template <typename Number>
    void Special(const rapidjson::Value& value) {
        const std::string_view text = StringOf(value);
        const Number infinity = std::numeric_limits<Number>::infinity();
        if (text == "nan") return Float(std::numeric_limits<Number>::quiet_NaN());
        if (text == "inf") return Float(infinity);
        if (text == "-inf") return Float(-infinity);
        const std::string bits = BytesOf(value);
        if (bits.size() != sizeof(Number))
            throw vxJson::Error("a float has the wrong number of bytes");
        appender_.bytes += (sizeof(Number) == 4 ? '\xca' : '\xcb') + bits;
    }

    template <typename Number>
    void Float(Number number) {
        std::string bits(sizeof number, '\0');
        std::memcpy(bits.data(), &number, sizeof number);
        if (__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__) std::reverse(bits.begin(), bits.end());
        appender_.bytes += (sizeof(Number) == 4 ? '\xca' : '\xcb') + bits;
    }

    static constexpr std::string_view kMap = "$map";
    Appender appender_;
    msgpack::packer<Appender> packer_;
    std::vector<Level> levels_;
};

}  // namespace

void PackExact(const rapidjson::Value& root, std::string& bytes) {
    Packing(bytes).Pack(root);
}

}  // namespace dataengine::tool
