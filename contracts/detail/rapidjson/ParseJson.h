#pragma once

#include <rapidjson/document.h>
#include <rapidjson/reader.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "contracts/detail/rapidjson/RapidJsonAllocator.h"
#include "contracts/detail/rapidjson/RawValues.h"
#include "contracts/detail/rapidjson/ReadableText.h"

namespace dataengine::detail {

/// Tag in place of a value's allocator that selects the specialization below.
struct ParseResultAccess;

}  // namespace dataengine::detail

RAPIDJSON_NAMESPACE_BEGIN

/// Sets the parse result of a document, which rapidjson lets only its own parse do. An access
/// trick: documents befriend GenericValue, and this specialization is not a value but one function
/// that uses that friendship.
template <>
class GenericValue<UTF8<>, dataengine::detail::ParseResultAccess> {
  public:
    static void Set(Document& document, const ParseResult& result) {
        document.parseResult_ = result;
    }
};

RAPIDJSON_NAMESPACE_END

namespace dataengine::detail {

using ParseResultOf = rapidjson::GenericValue<rapidjson::UTF8<>, ParseResultAccess>;

/// Builds a value in a pool from the events of a rapidjson reader, as a document does, but throws
/// std::bad_alloc when memory runs out, where a document writes through a null pointer.
class ValueBuilder {
  public:
    explicit ValueBuilder(JsonPool& pool) : pool_(pool) {}

    bool Null() { return Put(rapidjson::Value()); }
    bool Bool(bool value) { return Put(rapidjson::Value(value)); }
    bool Int(int value) { return Put(rapidjson::Value(value)); }
    bool Uint(unsigned value) { return Put(rapidjson::Value(value)); }
    bool Int64(std::int64_t value) { return Put(rapidjson::Value(value)); }
    bool Uint64(std::uint64_t value) { return Put(rapidjson::Value(value)); }
    bool Double(double value) { return Put(rapidjson::Value(value)); }
    bool RawNumber(const char*, rapidjson::SizeType, bool) { return false; }
    bool String(const char* bytes, rapidjson::SizeType size, bool) {
        RawValues::MakeString(finished_.emplace_back(), bytes, size, pool_);
        return true;
    }
    bool Key(const char* bytes, rapidjson::SizeType size, bool copy) {
        return String(bytes, size, copy);
    }

    bool StartArray() { return true; }
    bool EndArray(rapidjson::SizeType count) {
        RequireCount();
        rapidjson::Value array;
        MoveLast(count, RawValues::MakeArray(array, count, pool_));
        return Put(std::move(array));
    }
    bool StartObject() { return true; }
    bool EndObject(rapidjson::SizeType count) {
        RequireCount();
        rapidjson::Value object;
        MoveLast(2 * std::size_t{count}, RawValues::MakeObject(object, count, pool_));
        return Put(std::move(object));
    }

    /// Returns the value, which is complete after the last event.
    rapidjson::Value& Root() { return finished_.back(); }

  private:
    bool Put(rapidjson::Value value) {
        finished_.push_back(std::move(value));
        return true;
    }

    /// The reader counts elements in 32 bits.
    void RequireCount() const {
        if (finished_.size() > std::numeric_limits<rapidjson::SizeType>::max())
            throw std::bad_alloc();
    }

    void MoveLast(std::size_t count, rapidjson::Value* slots) {
        const auto end = finished_.end();
        const auto first = end - static_cast<std::ptrdiff_t>(count);
        for (auto value = first; value != end; ++value)
            new (slots++) rapidjson::Value(std::move(*value));
        finished_.erase(first, end);
    }

    JsonPool& pool_;
    std::vector<rapidjson::Value> finished_;  // values and names that no container holds yet
};

/// Parses the zero-terminated `text` with rapidjson's default flags and `moreFlags`, but without
/// recursion, into `value`, which is unchanged if the text does not parse. All storage is taken
/// from `pool`, including that of parts built before an error.
///
/// Returns the code and offset that rapidjson's recursive parser reports. Throws std::bad_alloc if
/// memory runs out, and for numbers, strings and containers larger than rapidjson can count.
template <unsigned moreFlags = rapidjson::kParseNoFlags>
rapidjson::ParseResult ParseJson(const char* text, rapidjson::Value& value, JsonPool& pool) {
    rapidjson::GenericReader<rapidjson::UTF8<>, rapidjson::UTF8<>, RapidJsonAllocator> reader;
    std::string buffer;
    rapidjson::StringStream stream(ReadableText(text, buffer));
    ValueBuilder builder(pool);
    constexpr unsigned flags =
        rapidjson::kParseDefaultFlags | rapidjson::kParseIterativeFlag | moreFlags;
    rapidjson::ParseResult result = reader.Parse<flags>(stream, builder);
    if (!result.IsError()) {
        value = std::move(builder.Root());
    } else if (result == rapidjson::kParseErrorDocumentEmpty && text[result.Offset()] != '\0') {
        // The iterative parser reports an empty document if the text starts with , : ] or }.
        result.Set(rapidjson::kParseErrorValueInvalid, result.Offset());
    }
    return result;
}

/// Does what document.Parse(text) does, but without recursion, and throws std::bad_alloc where that
/// writes through a null pointer: replaces the value and clears the parse error, or sets the parse
/// error and leaves the value unchanged.
inline void ParseDocument(const char* text, rapidjson::Document& document) {
    rapidjson::Value value;
    const rapidjson::ParseResult result = ParseJson(text, value, document.GetAllocator());
    ParseResultOf::Set(document, result);
    if (!result.IsError()) static_cast<rapidjson::Value&>(document) = std::move(value);
}

}  // namespace dataengine::detail
