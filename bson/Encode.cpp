#include <array>
#include <charconv>
#include <cstring>
#include <limits>
#include <string_view>
#include <vector>

#include "bson/Bson.h"
#include "bson/detail/Utf8.h"

namespace dataengine::bson {

namespace {

using vxJson::Value;

/// The types of BSON that values are encoded as.
enum class Type : char {
    real = 0x01,
    string = 0x02,
    document = 0x03,
    array = 0x04,
    binary = 0x05,
    boolean = 0x08,
    date = 0x09,
    null = 0x0a,
    int32 = 0x10,
    int64 = 0x12
};

constexpr char kGenericSubtype = 0;

bool IsInt32(long long number) {
    return number >= std::numeric_limits<std::int32_t>::min() &&
           number <= std::numeric_limits<std::int32_t>::max();
}

/// Writes a document in one walk, with the open objects and arrays on an explicit stack:
///
///     document   size of the document as int32, elements, 00
///     element    type, key, 00, content
///     string     size of the text with its 00 as int32, text, 00
///     binary     size of the bytes as int32, subtype, bytes
///
/// Numbers are little-endian; the keys of array elements are their indexes. libbson would end the
/// program if an allocation failed.
class Encoder {
  public:
    std::string Encode(const Value& document) {
        Open(document);
        for (;;) {
            Level& level = levels_.back();
            if (level.at != level.end) {
                Put(*level.at);
                continue;
            }
            Close();
            if (levels_.empty()) return std::move(bytes_);
            Next();
        }
    }

  private:
    /// An open object or array.
    struct Level {
        vxJson::ValueConstIterator at;
        vxJson::ValueConstIterator end;
        bool isArray;
        std::uint32_t index;
        std::size_t begin;  // of its bytes
    };

    void Open(const Value& container) {
        if (levels_.size() == kMaxLevels) {
            Fail("nests deeper than " + std::to_string(kMaxLevels) + " levels");
        }
        levels_.push_back(
            {container.begin(), container.end(), container.isArray(), 0, bytes_.size()});
        PutNumber<std::uint32_t>(0);  // the size, known at the end
    }

    void Close() {
        bytes_ += '\0';
        const std::size_t begin = levels_.back().begin;
        StoreNumber(static_cast<std::uint32_t>(bytes_.size() - begin), &bytes_[begin]);
        levels_.pop_back();
    }

    void Next() {
        ++levels_.back().at;
        ++levels_.back().index;
    }

    void Put(const Value& value) {
        switch (value.type()) {
            case vxJson::objectKind:
                PutHead(Type::document, kEmptyDocument);
                return Open(value);
            case vxJson::arrayKind:
                PutHead(Type::array, kEmptyDocument);
                return Open(value);
            case vxJson::integerKind:
                PutInteger(value);
                break;
            case vxJson::stringKind:
                PutString(value.asBinary());
                break;
            default:
                PutPlain(value);
        }
        Next();
    }

    void PutPlain(const Value& value) {
        switch (value.type()) {
            case vxJson::nullKind:
                return PutHead(Type::null, 0);
            case vxJson::boolKind:
                PutHead(Type::boolean, 1);
                bytes_ += value.asBool() ? '\1' : '\0';
                return;
            case vxJson::doubleKind: {
                std::uint64_t bits = 0;
                const double number = value.asDouble();
                std::memcpy(&bits, &number, sizeof bits);
                PutHead(Type::real, sizeof bits);
                return PutNumber(bits);
            }
            case vxJson::timeKind:
                PutHead(Type::date, 8);
                return PutNumber(static_cast<std::uint64_t>(value.asTime()));
            default: {
                const std::string& bytes = value.asBinary();
                PutHead(Type::binary, 4 + 1 + bytes.size());
                PutNumber(static_cast<std::uint32_t>(bytes.size()));
                bytes_ += kGenericSubtype;
                bytes_ += bytes;
            }
        }
    }

    void PutInteger(const Value& value) {
        const long long number = value.asInt64();
        if (number < 0 && value.asDouble() > 0) Fail(value.toString(false) + " is above 2^63-1");
        if (IsInt32(number)) {
            PutHead(Type::int32, 4);
            PutNumber(static_cast<std::uint32_t>(number));
        } else {
            PutHead(Type::int64, 8);
            PutNumber(static_cast<std::uint64_t>(number));
        }
    }

    void PutString(const std::string& text) {
        if (!IsUtf8(text)) Fail("the string is not UTF-8");
        PutHead(Type::string, 4 + text.size() + 1);
        PutNumber(static_cast<std::uint32_t>(text.size() + 1));
        bytes_ += text;
        bytes_ += '\0';
    }

    /// Writes the type and the key of an element whose content takes `contentSize` bytes. Checks
    /// that the document, with the ends of the open objects and arrays, has room for them.
    void PutHead(Type type, std::size_t contentSize) {
        const Level& level = levels_.back();
        std::array<char, std::numeric_limits<std::uint32_t>::digits10 + 1> digits;
        std::string_view key;
        if (level.isArray) {
            const char* const end =
                std::to_chars(digits.data(), digits.data() + digits.size(), level.index).ptr;
            key = {digits.data(), static_cast<std::size_t>(end - digits.data())};
        } else {
            key = level.at.key();
            if (key.find('\0') != std::string_view::npos) Fail("the key has a zero byte");
            if (!IsUtf8(key)) Fail("the key is not UTF-8");
        }
        const std::size_t size = 1 + key.size() + 1 + contentSize;
        if (size > kMaxSize - levels_.size() - bytes_.size()) {
            Fail("the document exceeds " + std::to_string(kMaxSize) + " bytes");
        }
        bytes_ += static_cast<char>(type);
        bytes_ += key;
        bytes_ += '\0';
    }

    template <typename Number>
    void PutNumber(Number number) {
        bytes_.resize(bytes_.size() + sizeof number);
        StoreNumber(number, &bytes_[bytes_.size() - sizeof number]);
    }

    template <typename Number>
    static void StoreNumber(Number number, char* at) {
        for (std::size_t i = 0; i < sizeof number; ++i) {
            at[i] = static_cast<char>(static_cast<unsigned char>(number >> (8 * i)));
        }
    }

    [[noreturn]] void Fail(const std::string& what) const {
        std::string path;
        for (const Level& level : levels_) {
            if (level.isArray) {
                path += "[" + std::to_string(level.index) + "]";
            } else {
                const std::string quoted = Value(level.at.key()).toString(false);
                path += (path.empty() ? "" : ".") + quoted.substr(1, quoted.size() - 2);
            }
        }
        throw vxJson::Error("bson::Encode: " + path + ": " + what);
    }

    static constexpr std::size_t kEmptyDocument = 5;

    std::string bytes_;
    std::vector<Level> levels_;
};

}  // namespace

std::string Encode(const Value& document) {
    if (!document.isObject()) throw vxJson::Error("bson::Encode: the root is not an object");
    return Encoder().Encode(document);
}

}  // namespace dataengine::bson
