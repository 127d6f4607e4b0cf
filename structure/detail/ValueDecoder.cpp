#include "structure/detail/ValueDecoder.h"

#include <rapidjson/reader.h>

#include <charconv>

#include "documents/RapidJsonAllocator.h"

namespace dataengine {
namespace {

/// Receives the one number or string of a token's text.
class TokenHandler : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, TokenHandler> {
  public:
    TokenHandler(rapidjson::Value& slot, JsonPool& pool) : slot_(slot), pool_(pool) {}

    bool Double(double value) {
        new (&slot_) rapidjson::Value(value);
        return true;
    }
    bool String(const char* bytes, rapidjson::SizeType size, bool) {
        RawValues::MakeString(slot_, bytes, size, pool_);
        return true;
    }

  private:
    rapidjson::Value& slot_;
    JsonPool& pool_;
};

/// Parses the text of one token with rapidjson's default flags into `slot`.
bool ParseToken(const char* text, rapidjson::Value& slot, JsonPool& pool) {
    rapidjson::GenericReader<rapidjson::UTF8<>, rapidjson::UTF8<>, RapidJsonAllocator> reader;
    rapidjson::StringStream stream(text);
    TokenHandler handler(slot, pool);
    return !reader.Parse(stream, handler).IsError();
}

struct BinBytes {
    bool control = false;    // a byte below 32: no JSON string may hold it
    bool delimiter = false;  // a quotation mark or a backslash
};

BinBytes Classify(const char* bytes, std::uint32_t size) {
    unsigned control = 0;
    unsigned delimiter = 0;
    for (std::uint32_t i = 0; i < size; ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        control |= unsigned{byte < 32};
        delimiter |= unsigned{byte == '"'} | unsigned{byte == '\\'};
    }
    return {control != 0, delimiter != 0};
}

}  // namespace

rapidjson::Value ValueDecoder::Decode(const char* bytes, std::size_t size) {
    rapidjson::Value root;
    slot_ = &root;
    end_ = bytes + size;
    open_.clear();
    left_ = static_cast<std::int64_t>(size) - 1;

    std::size_t taken = 0;
    if (msgpack::parse(bytes, size, taken, *this)) return root;

    // The visit was ended: the value is null, but only if the rest of its bytes is sound.
    CheckingVisitor checking;
    taken = 0;
    msgpack::parse(bytes, size, taken, checking);
    return rapidjson::Value();
}

bool ValueDecoder::visit_bin(const char* bytes, std::uint32_t size) {
    const BinBytes found = Classify(bytes, size);
    if (found.control) return false;
    if (found.delimiter) return PutBinByText(bytes, size);
    return visit_str(bytes, size);
}

bool ValueDecoder::PutFloatByText(double value) {
    if (!std::isfinite(value)) return false;
    char text[320];  // the greatest double has 309 digits before the point
    const auto end =
        std::to_chars(text, text + sizeof text - 1, value, std::chars_format::fixed, 2);
    *end.ptr = '\0';
    return ParseToken(text, *slot_++, pool_);
}

bool ValueDecoder::PutBinByText(const char* bytes, std::uint32_t size) {
    left_ -= size;
    text_.assign(1, '"').append(bytes, size).append(1, '"');
    return ParseToken(text_.c_str(), *slot_++, pool_);
}

}  // namespace dataengine
