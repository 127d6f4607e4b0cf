#include <rapidjson/reader.h>

#include <charconv>
#include <cmath>
#include <istream>
#include <limits>
#include <new>

#include "Base64.h"
#include "JsonContainers.h"

namespace vxJson {

namespace detail {

/// The allocator of the reader's stack, which throws std::bad_alloc. The default one of rapidjson
/// returns null, which its stack writes through.
class StackAllocator {
  public:
    static const bool kNeedFree = true;

    void* Malloc(std::size_t size) { return ::operator new(size); }
    void* Realloc(void* block, std::size_t oldSize, std::size_t size) {
        void* const grown = ::operator new(size);
        if (block != nullptr) std::memcpy(grown, block, std::min(oldSize, size));
        ::operator delete(block);
        return grown;
    }
    static void Free(void* block) { ::operator delete(block); }
};

/// Builds a value from the events of rapidjson's reader. Each event returns whether to go on.
class ParseHandler {
  public:
    ParseHandler(Value& root, bool extended) : root_(root), extended_(extended) {}

    bool Null() {
        Next();
        return true;
    }
    bool Bool(bool value) {
        Next() = value;
        return true;
    }
    bool String(const char* text, std::size_t length, bool /*copy*/) {
        Value& value = Next();
        ::new (static_cast<void*>(&value.text_)) std::string(text, length);
        value.tag_ = Value::Tag::string;
        return true;
    }
    bool RawNumber(const char* text, std::size_t length, bool /*copy*/);

    bool StartArray() {
        Value& value = Next();
        value.ToArray("parse");
        open_.push_back(&value);
        return true;
    }
    bool EndArray(std::size_t /*count*/) {
        open_.pop_back();
        return true;
    }
    bool StartObject() {
        Value& value = Next();
        value.ToObject("parse");
        open_.push_back(&value);
        return true;
    }
    bool Key(const char* text, std::size_t length, bool /*copy*/);
    bool EndObject(std::size_t /*count*/) {
        if (extended_) Convert(*open_.back());
        open_.pop_back();
        return true;
    }

    // Numbers come as RawNumber; rapidjson wants these too.
    bool Int(int) { return false; }
    bool Uint(unsigned) { return false; }
    bool Int64(std::int64_t) { return false; }
    bool Uint64(std::uint64_t) { return false; }
    bool Double(double) { return false; }

  private:
    /// The null value that the next event fills: the root, a new element, or the member of the last
    /// key. It stays where it is while its children come, for its parent gets no others meanwhile.
    Value& Next() {
        if (open_.empty()) return root_;
        Container* const container = open_.back()->plain_.container;
        if (container->isObject) return *member_;
        return static_cast<Array*>(container)->elements.emplace_back().value;
    }

    static void Convert(Value& value);

    Value& root_;
    const bool extended_;
    Value* member_ = nullptr;
    std::vector<Value*> open_;
};

bool ParseHandler::RawNumber(const char* text, std::size_t length, bool /*copy*/) {
    const char* const end = text + length;
    const auto isWhole = [end](std::from_chars_result result) {
        return result.ec == std::errc() && result.ptr == end;
    };
    Value& value = Next();
    if (*text == '-') {
        std::int64_t number = 0;
        if (isWhole(std::from_chars(text, end, number))) {
            value = number;
            return true;
        }
    } else {
        std::uint64_t number = 0;
        if (isWhole(std::from_chars(text, end, number))) {
            value = number;
            return true;
        }
    }
    double number = 0;
    if (std::from_chars(text, end, number).ec == std::errc::result_out_of_range) {
        // Too small or too large? A long double can tell: what it doesn't hold is too small, for
        // rapidjson has rejected the exponents that would be too large.
        static_assert(std::numeric_limits<long double>::max_exponent10 > 1000);
        long double wide = *text == '-' ? -0.0L : 0.0L;
        std::from_chars(text, end, wide);
        number = static_cast<double>(wide);
    }
    value = number;
    return std::isfinite(number);
}

bool ParseHandler::Key(const char* text, std::size_t length, bool /*copy*/) {
    Members& members = static_cast<Object*>(open_.back()->plain_.container)->members;
    const KeyView key(std::string_view(text, length));
    // Keys mostly come in order.
    if (members.empty() || ByKey()(std::prev(members.end())->first, key)) {
        member_ = &members.try_emplace(members.end(), detail::Key(key))->second.value;
    } else {
        member_ = &open_.back()->Member(key.text);
        *member_ = Value();
    }
    return true;
}

void ParseHandler::Convert(Value& value) {
    const Value& constant = value;
    if (constant.size() != 1) return;
    if (const Value& binary = constant["$binary"]; binary.size() == 2) {
        const Value& text = binary["base64"];
        const Value& subType = binary["subType"];
        std::string bytes;
        if (text.isString() && subType.isString() && subType.text_ == "00" &&
            DecodeBase64(text.text_, bytes)) {
            value = Value(bytes, binaryKind);
        }
    } else if (const Value& date = constant["$date"]; date.size() == 1) {
        const Value& text = date["$numberLong"];
        if (!text.isString()) return;
        const std::string& digits = text.text_;
        std::int64_t time = 0;
        std::from_chars(digits.data(), digits.data() + digits.size(), time);
        if (std::to_string(time) == digits) value = Value(static_cast<std::uint64_t>(time), false);
    }
}

}  // namespace detail

namespace {

bool ReadAll(std::istream& input, std::string& text) {
    std::size_t size = 0;
    while (input.good()) {
        text.resize(std::max<std::size_t>(2 * size, 4096));
        input.read(text.data() + size, static_cast<std::streamsize>(text.size() - size));
        size += static_cast<std::size_t>(input.gcount());
    }
    text.resize(size);
    return input.eof() && !input.bad();
}

}  // namespace

bool Reader::parse(std::istream& input, Value& root, bool extended) {
    root = Value();
    std::string text;
    if (!ReadAll(input, text)) return false;
    Value parsed;
    detail::ParseHandler builder(parsed, extended);
    rapidjson::GenericReader<rapidjson::UTF8<>, rapidjson::UTF8<>, detail::StackAllocator> reader;
    rapidjson::InsituStringStream stream(text.data());
    constexpr unsigned flags = rapidjson::kParseIterativeFlag | rapidjson::kParseInsituFlag |
                               rapidjson::kParseNumbersAsStringsFlag;
    // The reader takes a zero byte for the end of the text.
    if (reader.Parse<flags>(stream, builder).IsError() || stream.Tell() != text.size())
        return false;
    root = std::move(parsed);
    return true;
}

}  // namespace vxJson
