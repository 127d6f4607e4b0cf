#include <bson/bson.h>

#include <limits>
#include <string_view>
#include <vector>

#include "bson/Bson.h"
#include "bson/detail/Utf8.h"

namespace dataengine::bson {

namespace {

using vxJson::Value;

[[noreturn]] void Fail(std::size_t offset, const std::string& what) {
    throw vxJson::Error("bson::Decode: byte " + std::to_string(offset) + ": " + what);
}

/// Builds the value of a document. The open documents and arrays are kept on an explicit stack.
class Decoder {
  public:
    explicit Decoder(const std::uint8_t* bytes) : bytes_(bytes) {}

    Value Decode(std::uint32_t size) {
        Value root(vxJson::objectKind, false);
        Open(bytes_, size, root);
        while (!levels_.empty()) ReadElement();
        return root;
    }

  private:
    /// A document or an array with elements still to be read.
    struct Level {
        bson_iter_t at;
        std::size_t offset;  // of the first byte, from the start of the root
        Value* target;
    };

    void Open(const std::uint8_t* bytes, std::uint32_t size, Value& target) {
        const auto offset = static_cast<std::size_t>(bytes - bytes_);
        if (levels_.size() == kMaxLevels)
            Fail(offset, "nests deeper than " + std::to_string(kMaxLevels) + " levels");
        Level& level = levels_.emplace_back();
        level.offset = offset;
        level.target = &target;
        if (!bson_iter_init_from_data(&level.at, bytes, size))
            Fail(offset, "not a document of " + std::to_string(size) + " bytes");
    }

    void ReadElement() {
        Level& level = levels_.back();
        if (!bson_iter_next(&level.at)) {
            if (level.at.err_off != 0) Fail(level.offset + level.at.err_off, "invalid element");
            levels_.pop_back();
            return;
        }
        Value& value = AddElement(level);
        std::uint32_t size = 0;
        const std::uint8_t* bytes = nullptr;
        switch (bson_iter_type(&level.at)) {
            case BSON_TYPE_DOCUMENT:
                value = Value(vxJson::objectKind, false);
                bson_iter_document(&level.at, &size, &bytes);
                return Open(bytes, size, value);
            case BSON_TYPE_ARRAY:
                value = Value(vxJson::arrayKind, false);
                bson_iter_array(&level.at, &size, &bytes);
                return Open(bytes, size, value);
            case BSON_TYPE_CODEWSCOPE: {
                std::uint32_t length = 0;
                const char* const code = bson_iter_codewscope(&level.at, &length, &size, &bytes);
                value["$code"] = Checked({code, length});
                value["$scope"] = Value(vxJson::objectKind, false);
                return Open(bytes, size, value["$scope"]);
            }
            default:
                value = Plain(level.at);
        }
    }

    /// Returns the new element of an array, or the null member for the key of the current element.
    Value& AddElement(Level& level) {
        if (level.target->isArray()) return level.target->append(Value());
        Value& member =
            (*level.target)[Checked({bson_iter_key(&level.at), bson_iter_key_len(&level.at)})];
        member = Value();
        return member;
    }

    /// Returns the value of an element that is neither a document nor an array.
    Value Plain(const bson_iter_t& at) const {
        switch (bson_iter_type(&at)) {
            case BSON_TYPE_NULL:
                return {};
            case BSON_TYPE_BOOL:
                return bson_iter_bool(&at);
            case BSON_TYPE_INT32:
                return bson_iter_int32(&at);
            case BSON_TYPE_INT64:
                return static_cast<long long>(bson_iter_int64(&at));
            case BSON_TYPE_DOUBLE:
                return bson_iter_double(&at);
            case BSON_TYPE_DATE_TIME:
                return Value::Time(bson_iter_date_time(&at));
            case BSON_TYPE_UTF8:
                return Text(at, bson_iter_utf8);
            case BSON_TYPE_SYMBOL:
                return Text(at, bson_iter_symbol);
            case BSON_TYPE_CODE:
                return Text(at, bson_iter_code);
            case BSON_TYPE_OID:
                return ObjectId(*bson_iter_oid(&at));
            case BSON_TYPE_BINARY: {
                std::uint32_t size = 0;
                const std::uint8_t* bytes = nullptr;
                bson_iter_binary(&at, nullptr, &size, &bytes);
                return Value::Binary({bytes, bytes + size});
            }
            default:
                return Form(at);
        }
    }

    /// Returns the Extended JSON object of an element whose type has no corresponding kind.
    Value Form(const bson_iter_t& at) const {
        Value form;
        switch (bson_iter_type(&at)) {
            case BSON_TYPE_DECIMAL128: {
                bson_decimal128_t number;
                char text[BSON_DECIMAL128_STRING];
                bson_iter_decimal128(&at, &number);
                bson_decimal128_to_string(&number, text);
                form["$numberDecimal"] = text;
                break;
            }
            case BSON_TYPE_TIMESTAMP: {
                std::uint32_t seconds = 0;
                std::uint32_t increment = 0;
                bson_iter_timestamp(&at, &seconds, &increment);
                form["$timestamp"]["t"] = seconds;
                form["$timestamp"]["i"] = increment;
                break;
            }
            case BSON_TYPE_REGEX: {
                const char* options = nullptr;
                form["$regularExpression"]["pattern"] = Checked(bson_iter_regex(&at, &options));
                form["$regularExpression"]["options"] = Checked(options);
                break;
            }
            case BSON_TYPE_DBPOINTER: {
                std::uint32_t size = 0;
                const char* collection = nullptr;
                const bson_oid_t* id = nullptr;
                bson_iter_dbpointer(&at, &size, &collection, &id);
                form["$dbPointer"]["$ref"] = Checked({collection, size});
                form["$dbPointer"]["$id"] = ObjectId(*id);
                break;
            }
            default:
                return Constant(at);
        }
        return form;
    }

    Value Constant(const bson_iter_t& at) const {
        Value form;
        switch (bson_iter_type(&at)) {
            case BSON_TYPE_MINKEY:
                form["$minKey"] = 1;
                break;
            case BSON_TYPE_MAXKEY:
                form["$maxKey"] = 1;
                break;
            case BSON_TYPE_UNDEFINED:
                form["$undefined"] = true;
                break;
            default:
                Fail(Offset(), "unknown type");
        }
        return form;
    }

    static Value ObjectId(const bson_oid_t& id) {
        char digits[2 * sizeof id.bytes + 1];
        bson_oid_to_string(&id, digits);
        return digits;
    }

    using ReadText = const char*(const bson_iter_t*, std::uint32_t*);
    std::string Text(const bson_iter_t& at, ReadText read) const {
        std::uint32_t size = 0;
        const char* const text = read(&at, &size);
        return Checked({text, size});
    }

    std::string Checked(std::string_view text) const {
        if (!IsUtf8(text)) Fail(Offset(), "a string is not UTF-8");
        return std::string(text);
    }

    /// Returns the offset of the current element.
    std::size_t Offset() const { return levels_.back().offset + levels_.back().at.off; }

    const std::uint8_t* const bytes_;
    std::vector<Level> levels_;
};

}  // namespace

Value Decode(const char* bytes, std::size_t size) {
    constexpr std::size_t kEmptyDocument = 5;
    constexpr std::size_t kLargest = std::numeric_limits<std::int32_t>::max();
    if (size < kEmptyDocument || size > kLargest)
        Fail(0, "not a document of " + std::to_string(size) + " bytes");
    return Decoder(reinterpret_cast<const std::uint8_t*>(bytes))
        .Decode(static_cast<std::uint32_t>(size));
}

}  // namespace dataengine::bson
