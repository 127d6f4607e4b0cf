// A copy of rapidjson's reader that counts in 64 bits and reports the true length of a string. Its
// namespace keeps it apart from the reader of the rest of the program, and it must not assert that
// 32 bits are enough.
#define RAPIDJSON_NAMESPACE vxjson_rapidjson
#define RAPIDJSON_NO_SIZETYPEDEFINE
#define RAPIDJSON_ASSERT(condition) static_cast<void>(0)
#include <cstddef>
namespace vxjson_rapidjson {
using SizeType = std::size_t;
}
#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>

#include <charconv>
#include <istream>
#include <limits>
#include <new>

#include "vxutil/detail/Cursor.h"
#include "vxutil/detail/ExtendedJson.h"

namespace vxJson {

namespace json = vxjson_rapidjson;

namespace detail {

/// An allocator for the reader's stack that throws std::bad_alloc. The default allocator of
/// rapidjson returns null, and the stack writes through it.
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

/// Builds a value from the events of rapidjson's reader. Each event returns whether parsing may
/// continue.
///
/// Values are kept on one stack until their container ends, which is then created at its final
/// size. Keys are views of the text.
class ParseHandler : public json::BaseReaderHandler<json::UTF8<>, ParseHandler> {
  public:
    explicit ParseHandler(bool extended) : extended_(extended) { pending_.Push({}); }

    /// Returns the parsed value.
    Value Take() { return std::move(pending_[0].value); }

    bool Null() { return Put(); }
    bool Bool(bool value) { return Put(value); }
    bool String(const char* text, std::size_t length, bool /*copy*/) {
        return length <= kMost && Put(std::string(text, length));
    }
    bool RawNumber(const char* text, std::size_t length, bool /*copy*/);

    bool StartArray() {
        Start(false);
        return true;
    }
    bool EndArray(std::size_t count);
    bool StartObject() {
        Start(true);
        return true;
    }
    bool Key(const char* text, std::size_t length, bool /*copy*/) {
        pending_.Push({text, length});
        return length <= kMost;
    }
    bool EndObject(std::size_t count);

  private:
    /// The greatest length of a string, and number of elements or members.
    static constexpr std::size_t kMost = std::numeric_limits<std::uint32_t>::max();

    /// A container that has not ended. Inside a form of Extended JSON nothing is converted: the
    /// form is either converted as a whole or kept as written.
    struct Open {
        bool isObject;
        bool insideForm;
    };

    /// Constructs the value of the last key, which is still null, or of a new element.
    template <typename... Content>
    bool Put(Content&&... content) {
        if (!open_.empty() && !open_.back().isObject) pending_.Push({});
        ::new (static_cast<void*>(&pending_.GetTop().value))
            Value(std::forward<Content>(content)...);
        return true;
    }
    void Start(bool isObject) {
        Put();
        const bool insideForm = extended_ && ((!open_.empty() && open_.back().insideForm) ||
                                              IsFormKey(pending_.GetTop().key));
        open_.push_back({isObject, insideForm});
    }

    void End(std::size_t first, Value&& container);

    const bool extended_;
    ParsedMembers pending_;
    std::vector<Open> open_;
};

bool ParseHandler::RawNumber(const char* text, std::size_t length, bool /*copy*/) {
    const char* const end = text + length;
    const auto isWhole = [end](std::from_chars_result result) {
        return result.ec == std::errc() && result.ptr == end;
    };
    if (*text == '-') {
        std::int64_t number = 0;
        if (isWhole(std::from_chars(text, end, number))) return Put(number);
    } else {
        std::uint64_t number = 0;
        if (isWhole(std::from_chars(text, end, number))) return Put(number);
    }
    double number = 0;
    return ReadDouble({text, length}, number) && Put(number);
}

/// Replaces the children of the current container, from `first` on, by the container.
void ParseHandler::End(std::size_t first, Value&& container) {
    pending_.Shrink(first);
    pending_.GetTop().value = std::move(container);
    open_.pop_back();
}

bool ParseHandler::EndArray(std::size_t count) {
    if (count > kMost) return false;
    auto array = Array::Make(count);
    const std::size_t first = pending_.GetSize() - count;
    for (std::size_t i = first; i < pending_.GetSize(); ++i) {
        array->Append(std::move(pending_[i].value));
    }
    End(first, Value(Value::Tag::array, array.release()));
    return true;
}

bool ParseHandler::EndObject(std::size_t count) {
    if (count > kMost) return false;
    auto members = Object::Make(count);
    const std::size_t first = pending_.GetSize() - count;
    members->Fill(pending_, first, pending_.GetSize());
    Value object(Value::Tag::object, members.release());
    if (extended_ && !open_.back().insideForm) ReadForm(object);
    End(first, std::move(object));
    return true;
}

}  // namespace detail

namespace {

bool ReadAll(std::istream& input, std::string& text) {
    std::size_t size = 0;
    while (input.good()) {
        // Streams of strings and files report their remaining size. One more byte detects the end.
        const auto available = std::max<std::streamsize>(input.rdbuf()->in_avail(), 4095);
        text.resize(std::max(2 * size, size + static_cast<std::size_t>(available) + 1));
        input.read(text.data() + size, static_cast<std::streamsize>(text.size() - size));
        size += static_cast<std::size_t>(input.gcount());
    }
    text.resize(size);
    return input.eof() && !input.bad();
}

/// Parses `text`, which is overwritten. Returns the error, or sets `root`.
json::ParseResult ParseInsitu(std::string& text, bool extended, Value& root) {
    detail::ParseHandler builder(extended);
    json::GenericReader<json::UTF8<>, json::UTF8<>, detail::StackAllocator> reader;
    json::InsituStringStream stream(text.data());
    constexpr unsigned flags =
        json::kParseIterativeFlag | json::kParseInsituFlag | json::kParseNumbersAsStringsFlag;
    json::ParseResult result = reader.Parse<flags>(stream, builder);
    // The reader treats a zero byte as the end of the text.
    if (!result.IsError() && stream.Tell() != text.size()) {
        result.Set(json::kParseErrorDocumentRootNotSingular, stream.Tell());
    }
    if (!result.IsError()) root = builder.Take();
    return result;
}

}  // namespace

bool Reader::parse(std::istream& input, Value& root, bool extended) {
    root = Value();
    std::string text;
    return ReadAll(input, text) && !ParseInsitu(text, extended, root).IsError();
}

Value Parse(std::string_view text, bool extended) {
    std::string copy(text);
    Value root;
    const json::ParseResult result = ParseInsitu(copy, extended, root);
    if (!result.IsError()) return root;
    throw Error("byte " + std::to_string(result.Offset()) + ": is not JSON (" +
                (result.Code() == json::kParseErrorTermination
                     ? "A number or a string is too large."
                     : json::GetParseError_En(result.Code())) +
                ")");
}

}  // namespace vxJson
