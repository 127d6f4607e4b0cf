#include <rapidjson/reader.h>

#include <charconv>
#include <istream>
#include <new>

#include "ExtendedJson.h"
#include "JsonContainers.h"

namespace vxJson {

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
class ParseHandler {
  public:
    explicit ParseHandler(bool extended) : extended_(extended), pending_(1) {}

    /// Returns the parsed value.
    Value Take() { return std::move(pending_.front().value); }

    bool Null() { return Put(); }
    bool Bool(bool value) { return Put(value); }
    bool String(const char* text, std::size_t length, bool /*copy*/) {
        return Put(std::string(text, length));
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
        pending_.emplace_back().key = {text, length};
        return true;
    }
    bool EndObject(std::size_t count);

    // rapidjson requires these events, but reports all numbers as RawNumber.
    bool Int(int) { return false; }
    bool Uint(unsigned) { return false; }
    bool Int64(std::int64_t) { return false; }
    bool Uint64(std::uint64_t) { return false; }
    bool Double(double) { return false; }

  private:
    /// A container that has not ended. Inside a form of Extended JSON nothing is converted: the
    /// form is either converted as a whole or kept as written.
    struct Open {
        bool isObject;
        bool insideForm;
    };

    /// Constructs the value of the last key, which is still null, or of a new element.
    template <typename... Content>
    bool Put(Content&&... content) {
        if (!open_.empty() && !open_.back().isObject) pending_.emplace_back();
        ::new (static_cast<void*>(&pending_.back().value)) Value(std::forward<Content>(content)...);
        return true;
    }
    void Start(bool isObject) {
        Put();
        const bool insideForm = extended_ && ((!open_.empty() && open_.back().insideForm) ||
                                              IsFormKey(pending_.back().key));
        open_.push_back({isObject, insideForm});
    }

    static Value MakeArray(ParsedMember* first, ParsedMember* last);
    static Value MakeObject(ParsedMember* first, ParsedMember* last);
    static ParsedMember* SortMembers(ParsedMember* first, ParsedMember* last);

    const bool extended_;
    std::vector<ParsedMember> pending_;
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

Value ParseHandler::MakeArray(ParsedMember* first, ParsedMember* last) {
    auto array = Array::Make(static_cast<std::size_t>(last - first));
    for (; first != last; ++first) array->Append(std::move(first->value));
    return Value(*array.release());
}

Value ParseHandler::MakeObject(ParsedMember* first, ParsedMember* last) {
    return Value(*Object::Make(first, static_cast<std::size_t>(last - first)).release());
}

/// Sorts members by their keys. Of equal keys only the last is kept. Returns the new end.
ParsedMember* ParseHandler::SortMembers(ParsedMember* first, ParsedMember* last) {
    const auto isBefore = [](const ParsedMember& a, const ParsedMember& b) {
        return a.key < b.key;
    };
    const auto isNotBefore = [](const ParsedMember& a, const ParsedMember& b) {
        return a.key >= b.key;
    };
    if (std::adjacent_find(first, last, isNotBefore) == last) return last;
    std::stable_sort(first, last, isBefore);
    ParsedMember* end = first;
    for (ParsedMember* from = first; from != last; ++from) {
        if (end != first && end[-1].key == from->key) --end;
        if (end != from) *end = std::move(*from);
        ++end;
    }
    return end;
}

bool ParseHandler::EndArray(std::size_t count) {
    ParsedMember* const last = pending_.data() + pending_.size();
    ParsedMember* const first = last - count;
    Value array = MakeArray(first, last);
    pending_.resize(pending_.size() - count);
    pending_.back().value = std::move(array);
    open_.pop_back();
    return true;
}

bool ParseHandler::EndObject(std::size_t count) {
    ParsedMember* const first = pending_.data() + (pending_.size() - count);
    ParsedMember* last = first + count;
    Value object;
    bool isForm = false;
    if (extended_ && !open_.back().insideForm && count > 0 && first->key.substr(0, 1) == "$") {
        last = SortMembers(first, last);
        isForm = ReadForm(first, last, object);
    }
    if (!isForm) object = MakeObject(first, last);
    pending_.resize(pending_.size() - count);
    pending_.back().value = std::move(object);
    open_.pop_back();
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

}  // namespace

bool Reader::parse(std::istream& input, Value& root, bool extended) {
    root = Value();
    std::string text;
    if (!ReadAll(input, text)) return false;
    detail::ParseHandler builder(extended);
    rapidjson::GenericReader<rapidjson::UTF8<>, rapidjson::UTF8<>, detail::StackAllocator> reader;
    rapidjson::InsituStringStream stream(text.data());
    constexpr unsigned flags = rapidjson::kParseIterativeFlag | rapidjson::kParseInsituFlag |
                               rapidjson::kParseNumbersAsStringsFlag;
    // The reader treats a zero byte as the end of the text.
    if (reader.Parse<flags>(stream, builder).IsError() || stream.Tell() != text.size())
        return false;
    root = builder.Take();
    return true;
}

}  // namespace vxJson
