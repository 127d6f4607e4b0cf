#include <bson/bson.h>

#include <array>
#include <limits>
#include <memory>
#include <string_view>
#include <vector>

#include "bson/Bson.h"
#include "bson/detail/Utf8.h"

namespace dataengine::bson {

namespace {

using vxJson::Value;

/// The path of a walk over a document: the open objects and arrays, outermost first, each with the
/// position of its current child.
class Place {
  public:
    void Open(const Value& container) {
        if (levels_.size() == kMaxLevels)
            Fail("nests deeper than " + std::to_string(kMaxLevels) + " levels");
        levels_.emplace_back(container);
    }
    void Close() { levels_.pop_back(); }
    void Next() {
        ++levels_.back().at;
        ++levels_.back().index;
    }

    bool AtEnd() const { return levels_.back().at == levels_.back().end; }
    bool IsClosed() const { return levels_.empty(); }
    const Value& Current() const { return *levels_.back().at; }

    /// Returns the key of the current child; the key of an array element is its index.
    std::string_view Key() {
        const Level& level = levels_.back();
        if (!level.isArray) return level.at.key();
        const char* key = nullptr;
        const std::size_t length =
            bson_uint32_to_string(level.index, &key, digits_.data(), digits_.size());
        return {key, length};
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

  private:
    struct Level {
        explicit Level(const Value& container)
            : at(container.begin()), end(container.end()), isArray(container.isArray()) {}

        vxJson::ValueConstIterator at;
        vxJson::ValueConstIterator end;
        bool isArray;
        std::uint32_t index = 0;
    };

    std::vector<Level> levels_;
    std::array<char, 16> digits_;
};

/// Walks over all values of `document`, which must be an object. Calls Start and End of the visitor
/// for each container below the root, and Plain for every other value.
template <typename Visitor>
void Walk(const Value& document, Visitor& visitor) {
    Place place;
    place.Open(document);
    for (;;) {
        if (place.AtEnd()) {
            place.Close();
            if (place.IsClosed()) return;
            visitor.End();
            place.Next();
            continue;
        }
        const Value& value = place.Current();
        if (value.isObject() || value.isArray()) {
            visitor.Start(place);
            place.Open(value);
        } else {
            visitor.Plain(place);
            place.Next();
        }
    }
}

bool IsInt32(long long number) {
    return number >= std::numeric_limits<std::int32_t>::min() &&
           number <= std::numeric_limits<std::int32_t>::max();
}

/// Computes the size of a document and rejects values that BSON cannot represent.
class Measurement {
  public:
    std::size_t Size() const { return size_; }

    void Start(Place& place) { Add(place, kEmptyDocument); }
    void End() {}
    void Plain(Place& place) { Add(place, ContentSize(place)); }

  private:
    static constexpr std::size_t kEmptyDocument = 5;

    void Add(Place& place, std::size_t contentSize) {
        const std::string_view key = place.Key();
        if (key.find('\0') != std::string_view::npos) place.Fail("the key has a zero byte");
        if (!IsUtf8(key)) place.Fail("the key is not UTF-8");
        size_ += 1 + key.size() + 1 + contentSize;
        if (size_ > kMaxSize)
            place.Fail("the document is larger than " + std::to_string(kMaxSize) + " bytes");
    }

    static std::size_t ContentSize(const Place& place) {
        const Value& value = place.Current();
        switch (value.type()) {
            case vxJson::nullKind:
                return 0;
            case vxJson::boolKind:
                return 1;
            case vxJson::integerKind:
                if (value.asInt64() < 0 && value.asDouble() > 0)
                    place.Fail(value.toString(false) + " is above 2^63-1");
                return IsInt32(value.asInt64()) ? 4 : 8;
            case vxJson::stringKind:
                if (!IsUtf8(value.asBinary())) place.Fail("the string is not UTF-8");
                return 4 + value.asBinary().size() + 1;
            case vxJson::binaryKind:
                return 4 + 1 + value.asBinary().size();
            default:
                return 8;
        }
    }

    std::size_t size_ = kEmptyDocument;
};

/// Writes a measured document into a buffer of exactly its size. libbson then allocates nothing for
/// it; libbson ends the program if an allocation fails.
class Writing {
  public:
    explicit Writing(std::string& bytes)
        : buffer_(reinterpret_cast<std::uint8_t*>(bytes.data())),
          size_(bytes.size()),
          writer_(bson_writer_new(&buffer_, &size_, 0, nullptr, nullptr)) {
        Check(bson_writer_begin(writer_.get(), &root_));
    }

    void Start(Place& place) {
        const std::string_view key = place.Key();
        // Both operations are ended by bson_append_document_end.
        const auto begin =
            place.Current().isArray() ? bson_append_array_begin : bson_append_document_begin;
        Check(begin(Top(), key.data(), static_cast<int>(key.size()), &children_[depth_]));
        ++depth_;
    }

    void End() {
        bson_t* const child = Top();
        --depth_;
        Check(bson_append_document_end(Top(), child));
    }

    void Plain(Place& place) {
        const std::string_view key = place.Key();
        Check(Append(Top(), key.data(), static_cast<int>(key.size()), place.Current()));
    }

    void Finish() { bson_writer_end(writer_.get()); }

  private:
    struct Destroy {
        void operator()(bson_writer_t* writer) const { bson_writer_destroy(writer); }
    };

    static bool Append(bson_t* parent, const char* key, int length, const Value& value) {
        switch (value.type()) {
            case vxJson::nullKind:
                return bson_append_null(parent, key, length);
            case vxJson::boolKind:
                return bson_append_bool(parent, key, length, value.asBool());
            case vxJson::integerKind:
                return IsInt32(value.asInt64())
                           ? bson_append_int32(parent, key, length, value.asInt())
                           : bson_append_int64(parent, key, length, value.asInt64());
            case vxJson::doubleKind:
                return bson_append_double(parent, key, length, value.asDouble());
            case vxJson::timeKind:
                return bson_append_date_time(parent, key, length, value.asTime());
            case vxJson::stringKind:
                return bson_append_utf8(parent, key, length, value.asBinary().data(),
                                        static_cast<int>(value.asBinary().size()));
            default:
                return bson_append_binary(
                    parent, key, length, BSON_SUBTYPE_BINARY,
                    reinterpret_cast<const std::uint8_t*>(value.asBinary().data()),
                    static_cast<std::uint32_t>(value.asBinary().size()));
        }
    }

    // A measured document is valid, so libbson never rejects it.
    static void Check(bool done) {
        if (!done) throw vxJson::Error("bson::Encode: libbson rejected the document");
    }

    bson_t* Top() { return depth_ == 0 ? root_ : &children_[depth_ - 1]; }

    std::uint8_t* buffer_;
    std::size_t size_;
    std::unique_ptr<bson_writer_t, Destroy> writer_;
    bson_t* root_ = nullptr;
    // Open documents refer to one another, so they must not move.
    bson_t children_[kMaxLevels];
    std::size_t depth_ = 0;
};

}  // namespace

std::string Encode(const Value& document) {
    if (!document.isObject()) throw vxJson::Error("bson::Encode: the root is not an object");
    Measurement measurement;
    Walk(document, measurement);
    std::string bytes(measurement.Size(), '\0');
    Writing writing(bytes);
    Walk(document, writing);
    writing.Finish();
    return bytes;
}

}  // namespace dataengine::bson
