#pragma once

#include <rapidjson/document.h>
#include <rapidjson/reader.h>

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "documents/RapidJsonAllocator.h"
#include "documents/RawValues.h"

namespace dataengine {

/// Builds a value in a pool from the events of a rapidjson reader, as a document does, but throws
/// std::bad_alloc where memory ends. Documents write through the null pointer that they get there.
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
        rapidjson::Value array;
        MoveLast(count, RawValues::MakeArray(array, count, pool_));
        return Put(std::move(array));
    }
    bool StartObject() { return true; }
    bool EndObject(rapidjson::SizeType count) {
        rapidjson::Value object;
        MoveLast(2 * std::size_t{count}, RawValues::MakeObject(object, count, pool_));
        return Put(std::move(object));
    }

    /// The value, once all events have come.
    rapidjson::Value& Root() { return finished_.back(); }

  private:
    bool Put(rapidjson::Value value) {
        finished_.push_back(std::move(value));
        return true;
    }

    void MoveLast(std::size_t count, rapidjson::Value* slots) {
        const auto end = finished_.end();
        const auto first = end - static_cast<std::ptrdiff_t>(count);
        for (auto value = first; value != end; ++value)
            new (slots++) rapidjson::Value(std::move(*value));
        finished_.erase(first, end);
    }

    JsonPool& pool_;
    std::vector<rapidjson::Value> finished_;  // and not yet in a container; names too
};

/// Parses the zero-terminated `text` with rapidjson's default flags, but without recursion, into
/// `value`, which is left as it is if the text doesn't parse.
inline bool ParseJson(const char* text, rapidjson::Value& value, JsonPool& pool) {
    rapidjson::GenericReader<rapidjson::UTF8<>, rapidjson::UTF8<>, RapidJsonAllocator> reader;
    rapidjson::StringStream stream(text);
    ValueBuilder builder(pool);
    constexpr unsigned flags = rapidjson::kParseDefaultFlags | rapidjson::kParseIterativeFlag;
    if (reader.Parse<flags>(stream, builder).IsError()) return false;
    value = std::move(builder.Root());
    return true;
}

}  // namespace dataengine
