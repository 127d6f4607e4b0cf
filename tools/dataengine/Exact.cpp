#include "tools/dataengine/Exact.h"

#include <VxUtil/vxJson.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <msgpack/pack.hpp>
#include <optional>
#include <vector>

#include "tools/dataengine/Text.h"

namespace dataengine::tool {
namespace {

using detail::PackedBytes;
using detail::PackedHead;
using detail::PackedKind;
using JsonValue = rapidjson::Value;

std::string Tagged(const char* tag, const std::string& text) {
    return std::string("{\"$") + tag + "\":" + text + "}";
}

std::string FloatText(double value, std::string_view packed) {
    const bool isSingle = packed.size() == 5;
    if (std::isfinite(value) && !isSingle) return vxJson::Value(value).toString(false);
    const std::string bits = HexOf(packed.substr(1));
    if (std::isnan(value) && bits != "7fc00000" && bits != "7ff8000000000000")
        return RawText(packed);
    char text[32];
    const char* const end = std::to_chars(text, text + sizeof text, static_cast<float>(value)).ptr;
    const std::string number(text, static_cast<std::size_t>(end - text));
    return Tagged(isSingle ? "float32" : "float64",
                  std::isfinite(value) ? number : '"' + number + '"');
}

/// Prints a value with an explicit stack of its open containers.
class ExactPrinter {
  public:
    explicit ExactPrinter(PackedBytes& bytes) : bytes_(bytes) {}

    Exact Print() {
        std::string& text = exact_.text;
        std::vector<Level> open{{1, false}};
        for (;;) {
            while (open.back().remaining == 0) {
                const bool isMap = open.back().isMap;
                open.pop_back();
                if (open.empty()) return std::move(exact_);
                text += isMap ? '}' : ']';
            }
            Level& level = open.back();
            const bool isKey = level.isMap && level.remaining % 2 == 0;
            --level.remaining;
            if (!text.empty() && std::strchr("[{:", text.back()) == nullptr) text += ',';
            const PackedHead& head = bytes_.Head();
            if (isKey) {
                text += Key(head.kind) + ':';
            } else if (head.kind == PackedKind::kArray || head.kind == PackedKind::kMap) {
                const bool isMap = head.kind == PackedKind::kMap;
                text += isMap ? '{' : '[';
                open.push_back({bytes_.TakeLength(head) * (isMap ? 2 : 1), isMap});
            } else {
                text += Scalar(head);
            }
        }
    }

  private:
    struct Level {
        std::uint64_t remaining;  // elements, or keys and values
        bool isMap;
    };

    std::string Key(PackedKind kind) {
        const char* const begin = bytes_.Next();
        if (kind == PackedKind::kStr) {
            const std::string_view key = String();
            if (IsUtf8(key) && key.substr(0, 1) != "$") return JsonString(key);
        } else {
            if (kind != PackedKind::kBin) MakeNull("a map key that is not a string");
            bytes_.Skip();
        }
        return "\"$" + HexOf(Since(begin)) + '"';
    }

    std::string Scalar(const PackedHead& head) {
        const char* const begin = bytes_.Next();
        switch (head.kind) {
            case PackedKind::kInteger: {
                const detail::PackedInteger number = bytes_.TakeInteger(head);
                return number.isNegative ? std::to_string(static_cast<std::int64_t>(number.bits))
                                         : std::to_string(number.bits);
            }
            case PackedKind::kFloat32:
            case PackedKind::kFloat64: {
                const double value = bytes_.TakeFloat(head);
                if (!std::isfinite(value)) MakeNull(std::isnan(value) ? "NaN" : "infinity");
                return FloatText(value, Since(begin));
            }
            case PackedKind::kStr:
            case PackedKind::kBin: {
                const std::string_view text = String();
                if (!IsUtf8(text)) return RawText(Since(begin));
                return head.kind == PackedKind::kStr ? JsonString(text)
                                                     : Tagged("bin", JsonString(text));
            }
            case PackedKind::kExt: {
                MakeNull("ext");
                const std::string_view data = String();
                const std::string type = std::to_string(static_cast<signed char>(data[0]));
                return Tagged("ext", '[' + type + ",\"" + HexOf(data.substr(1)) + "\"]");
            }
            case PackedKind::kBoolean:
                return bytes_.TakeBoolean() ? "true" : "false";
            default:
                bytes_.TakeNil();
                return "null";
        }
    }

    std::string_view String() {
        const auto size = static_cast<std::size_t>(bytes_.TakeLength(bytes_.Head()));
        return {bytes_.TakeBytes(size), size};
    }
    std::string_view Since(const char* begin) const {
        return {begin, static_cast<std::size_t>(bytes_.Next() - begin)};
    }
    void MakeNull(const char* reason) {
        if (exact_.nullReason.empty()) exact_.nullReason = reason;
    }

    PackedBytes& bytes_;
    Exact exact_;
};

std::string_view StringOf(const JsonValue& value) {
    if (!value.IsString()) return {};
    return {value.GetString(), value.GetStringLength()};
}

/// Returns the bytes of hexadecimal digits; nothing for any other text.
std::optional<std::string> BytesOf(std::string_view hex) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
        unsigned byte = 0;
        if (std::from_chars(&hex[i], &hex[i] + 2, byte, 16).ptr != &hex[i] + 2) break;
        bytes += static_cast<char>(byte);
    }
    return 2 * bytes.size() == hex.size() ? std::optional(bytes) : std::nullopt;
}

/// Packs a value with an explicit stack of its open containers.
class Packing {
  public:
    explicit Packing(std::string& bytes) : bytes_(bytes) {}

    void Pack(const JsonValue& root) {
        std::vector<Level> open{{&root, &root + 1, false}};
        while (!open.empty()) {
            Level& level = open.back();
            if (level.next == level.end) {
                open.pop_back();
                continue;
            }
            const JsonValue& value = *level.next++;
            if (level.isMap && (level.end - level.next) % 2 == 1) {
                Key(StringOf(value));
            } else if (value.IsArray()) {
                packer_.pack_array(value.Size());
                open.push_back({value.Begin(), value.End(), false});
            } else if (!value.IsObject()) {
                Scalar(value);
            } else if (value.MemberCount() != 1 || !Tag(*value.MemberBegin())) {
                const rapidjson::SizeType count = value.MemberCount();
                const JsonValue* const first = count == 0 ? nullptr : &value.MemberBegin()->name;
                packer_.pack_map(count);
                open.push_back({first, first + 2 * std::size_t{count}, true});
            }
        }
    }

    void write(const char* data, std::size_t size) { bytes_.append(data, size); }  // for packer_

  private:
    /// Values that are not yet packed: those of an array, or names and values of an object.
    struct Level {
        const JsonValue* next;
        const JsonValue* end;
        bool isMap;
    };

    void Key(std::string_view key) {
        if (key.substr(0, 1) != "$") return Str(key);
        const std::optional<std::string> packed = BytesOf(key.substr(1));
        if (!packed)
            throw vxJson::Error('"' + std::string(key) + "\" is not the key of a packed value");
        bytes_ += *packed;
    }

    void Scalar(const JsonValue& value) {
        if (value.IsString()) return Str(StringOf(value));
        if (value.IsUint64()) return void(packer_.pack_uint64(value.GetUint64()));
        if (value.IsInt64()) return void(packer_.pack_int64(value.GetInt64()));
        if (value.IsDouble()) return Float64(value.GetDouble());
        if (value.IsNull()) return void(packer_.pack_nil());
        value.GetBool() ? packer_.pack_true() : packer_.pack_false();
    }

    /// Packs the value of an object with one member. Returns false if it is a map.
    bool Tag(const JsonValue::Member& member) {
        const std::string_view tag = StringOf(member.name);
        const JsonValue& value = member.value;
        const std::string_view text = StringOf(value);
        const auto* const special = std::find(std::begin(kSpecial), std::end(kSpecial), text);
        const bool isFloat = value.IsNumber() || special != std::end(kSpecial);
        const double number = value.IsNumber() ? value.GetDouble()
                              : isFloat        ? std::strtod(text.data(), nullptr)
                                               : 0;
        if (tag == "$float32" && isFloat) {
            Float32(static_cast<float>(number));
        } else if (tag == "$float64" && isFloat) {
            Float64(number);
        } else if (tag == "$bin" && value.IsString()) {
            packer_.pack_bin(static_cast<std::uint32_t>(text.size()));
            bytes_ += text;
        } else if (tag == "$raw" && value.IsString()) {
            bytes_ += Hexadecimal(text);
        } else if (tag == "$ext" && value.IsArray() && value.Size() == 2 && value[0].IsInt()) {
            const std::string data = Hexadecimal(StringOf(value[1]));
            packer_.pack_ext(data.size(), static_cast<std::int8_t>(value[0].GetInt()));
            bytes_ += data;
        } else {
            return false;
        }
        return true;
    }

    static std::string Hexadecimal(std::string_view text) {
        if (const auto bytes = BytesOf(text)) return *bytes;
        throw vxJson::Error('"' + std::string(text) + "\" is not hexadecimal");
    }

    void Str(std::string_view text) {
        packer_.pack_str(static_cast<std::uint32_t>(text.size()));
        bytes_ += text;
    }

    // The packer would turn whole floats into integers, but packs integers of fixed width.
    void Float32(float number) {
        std::uint32_t bits;
        std::memcpy(&bits, &number, sizeof bits);
        packer_.pack_fix_uint32(bits);
        bytes_[bytes_.size() - sizeof bits - 1] = '\xca';
    }
    void Float64(double number) {
        std::uint64_t bits;
        std::memcpy(&bits, &number, sizeof bits);
        packer_.pack_fix_uint64(bits);
        bytes_[bytes_.size() - sizeof bits - 1] = '\xcb';
    }

    static constexpr std::string_view kSpecial[] = {"nan", "inf", "-inf"};
    std::string& bytes_;
    msgpack::packer<Packing> packer_{*this};
};

}  // namespace

Exact ReadExact(PackedBytes& bytes) {
    return ExactPrinter(bytes).Print();
}

std::string RawText(std::string_view bytes) {
    return Tagged("raw", '"' + HexOf(bytes) + '"');
}

void PackExact(const JsonValue& root, std::string& bytes) {
    Packing(bytes).Pack(root);
}

}  // namespace dataengine::tool
