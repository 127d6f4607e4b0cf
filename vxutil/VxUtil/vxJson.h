#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include <VxUtil/VxUtilExport.h>

namespace vxJson {

class ValueIterator;
class ValueConstIterator;

namespace detail {
struct Container;
struct Array;
struct Object;
struct Slot;
class ParseHandler;
class Printer;
}  // namespace detail

/// The kinds of a value. The numbers of null and binary are fixed; the others may change.
enum ValueType : int {
    nullKind = 0,
    boolKind = 1,
    integerKind = 2,
    doubleKind = 3,
    stringKind = 4,
    arrayKind = 5,
    objectKind = 6,
    timeKind = 7,
    binaryKind = 110
};

/// What a value throws when it is asked for something that its kind doesn't have. The text names
/// the operation, the kind found and the one wanted.
class VXUTIL_EXPORT Error : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// A JSON value with two kinds more than JSON has: binary (bytes) and time (milliseconds since the
/// Unix epoch). It owns all that it holds; a copy is deep.
///
/// Where it differs from what one might expect:
/// - Strings are bytes. Nothing looks at their encoding.
/// - Integers cover -2^63 to 2^64-1. 1 and 1.0 are different values of different kinds, and so are
///   0.0 and -0.0; NaN equals NaN.
/// - The members of an object are kept sorted by the bytes of their keys, so that equal values
///   print equal text however they were built.
/// - A reference to a member stays valid while other members are added. A reference to an array
///   element does not survive an append.
/// - Reading never fails on what is absent: a const lookup gives the null value, and every
///   conversion of the null value gives an empty result.
/// - Depth is bounded by memory alone; no operation recurses.
///
/// All operations that allocate may throw std::bad_alloc. Copy construction and assignment give the
/// strong guarantee, and the argument of an assignment or of append may be the value itself or a
/// part of it.
///
/// Thread rule: distinct values may be used at the same time; one value may be read by many threads
/// while none writes.
class VXUTIL_EXPORT Value {
  public:
    /// The null value.
    Value() noexcept : tag_(Tag::null), plain_() {}

    /// The empty value of a kind: null, false, 0, "", no elements. The flag has no meaning.
    /// Throws Error if `type` is no kind.
    Value(ValueType type, bool flag);

    /// A string or, with 110, a binary value of these bytes. Throws Error on any other kind.
    Value(const std::string& bytes, ValueType type);
    /// The same for the bytes up to the first zero byte.
    Value(const char* bytes, ValueType type) : Value(std::string(bytes), type) {}

    /// A binary value of exactly `length` bytes. Throws Error if `length` is negative.
    Value(const char* bytes, int length);

    /// A time value: the 64 bits are taken as signed milliseconds. The flag has no meaning.
    Value(unsigned long long time, bool flag) noexcept : tag_(Tag::time), plain_() {
        static_cast<void>(flag);
        plain_.signedNumber = static_cast<std::int64_t>(time);
    }

    /// A bool, a double or an integer. @{
    Value(bool value) noexcept : tag_(Tag::boolean), plain_() { plain_.boolean = value; }
    Value(double value) noexcept : tag_(Tag::real), plain_() { plain_.real = value; }
    Value(int value) noexcept : Value(static_cast<long long>(value)) {}
    Value(long value) noexcept : Value(static_cast<long long>(value)) {}
    Value(long long value) noexcept : Value(static_cast<unsigned long long>(value)) {
        if (value < 0) {
            tag_ = Tag::negative;
            plain_.signedNumber = value;
        }
    }
    Value(unsigned value) noexcept : Value(static_cast<unsigned long long>(value)) {}
    Value(unsigned long value) noexcept : Value(static_cast<unsigned long long>(value)) {}
    Value(unsigned long long value) noexcept : tag_(Tag::natural), plain_() {
        plain_.unsignedNumber = value;
    }
    /// @}
    /// A string of these bytes; a `const char*` ends at its first zero byte. @{
    Value(const char* text) : Value(std::string(text)) {}
    Value(const std::string& text) : Value(std::string(text)) {}
    Value(std::string&& text) noexcept : tag_(Tag::string), text_(std::move(text)) {}
    /// @}

    // No pointer but a text may turn into a bool, and no kind into an integer.
    template <class T, std::enable_if_t<!std::is_same_v<std::remove_cv_t<T>, char>, int> = 0>
    Value(T*) = delete;
    Value(std::nullptr_t) = delete;
    Value(ValueType) = delete;

    /// A deep copy. Linear in the size of `other`.
    Value(const Value& other);

    /// Takes over what `other` holds and leaves it null.
    Value(Value&& other) noexcept : Value() { Take(other); }

    /// Releases all that the value holds. Needs no memory and no recursion.
    ~Value() {
        if (HoldsText()) {
            text_.~basic_string();
        } else if (HoldsContainer()) {
            ReleaseContainer();
        }
    }

    /// Replaces kind and content. A move leaves `other` null. @{
    Value& operator=(const Value& other) { return *this = Value(other); }
    Value& operator=(Value&& other) noexcept;
    Value& operator=(bool value) noexcept { return *this = Value(value); }
    Value& operator=(double value) noexcept { return *this = Value(value); }
    Value& operator=(int value) noexcept { return *this = Value(value); }
    Value& operator=(long value) noexcept { return *this = Value(value); }
    Value& operator=(long long value) noexcept { return *this = Value(value); }
    Value& operator=(unsigned value) noexcept { return *this = Value(value); }
    Value& operator=(unsigned long value) noexcept { return *this = Value(value); }
    Value& operator=(unsigned long long value) noexcept { return *this = Value(value); }
    Value& operator=(const char* text) { return *this = Value(text); }
    Value& operator=(const std::string& text) { return *this = Value(text); }
    Value& operator=(std::string&& text) noexcept { return *this = Value(std::move(text)); }
    /// @}
    template <class T, std::enable_if_t<!std::is_same_v<std::remove_cv_t<T>, char>, int> = 0>
    Value& operator=(T*) = delete;
    Value& operator=(std::nullptr_t) = delete;
    Value& operator=(ValueType) = delete;

    /// The member for `key`, added as null if it is absent; a null value becomes an object first.
    /// Throws Error on a value that is neither null nor an object. Logarithmic. @{
    Value& operator[](const char* key) { return Member(key); }
    Value& operator[](const std::string& key) { return Member(key); }
    /// @}

    /// The member for `key`, or the null value if there is none, whatever the kind. Logarithmic. @{
    const Value& operator[](const char* key) const noexcept { return Find(key); }
    const Value& operator[](const std::string& key) const noexcept { return Find(key); }
    /// @}

    /// The element at `index`. An array that is too short is filled up with nulls, and a null value
    /// becomes an array first. Throws Error if `index` is negative, and on a value that is neither
    /// null nor an array.
    Value& operator[](int index);

    /// The element at `index`, or the null value if there is none, whatever the kind.
    const Value& operator[](int index) const noexcept;

    /// Conversions that lose nothing; everything else throws Error. The null value gives an empty
    /// text, 0 or false.
    /// @{

    /// The bytes of a string or binary value; "true" or "false"; a number as it is printed.
    std::string asString() const;
    /// From an integer, a whole double and a time, each if in range, and from a bool.
    int asInt() const;
    long long asInt64() const;
    /// The value of a bool; whether a number is other than 0.
    bool asBool() const;
    /// The milliseconds of a time; an integer or a whole double, each if in range.
    long long asTime() const;
    /// The nearest double of an integer; a double itself; 0 or 1 of a bool.
    double asDouble() const;
    /// The bytes of a binary or string value. Valid until the value changes or dies.
    const std::string& asBinary() const;
    /// @}

    /// The kind of the value.
    ValueType type() const noexcept;
    /// Whether the value is of this kind. Null is no array and no object. @{
    bool isNull() const noexcept { return tag_ == Tag::null; }
    bool isString() const noexcept { return tag_ == Tag::string; }
    bool isArray() const noexcept { return tag_ == Tag::array; }
    bool isObject() const noexcept { return tag_ == Tag::object; }
    /// @}

    /// True for null and for an array or object without members; false for all else, "" included.
    bool empty() const noexcept { return isNull() || ((isArray() || isObject()) && size() == 0); }

    /// The number of elements or members; 0 for anything but an array or an object.
    std::uint32_t size() const noexcept;

    /// The value as JSON text: compact with false, as toStyledString with true. Binary and time are
    /// written as {"$binary":{"base64":"...","subType":"00"}} and {"$date":{"$numberLong":"..."}}.
    /// A double is written as the shortest text that reads back as itself, with a point below 1e21
    /// and from 1e-6 on, else with an exponent; NaN and the infinities, which JSON lacks, are
    /// written as null. Bytes from 0x80 on are written as they are.
    std::string toString(bool flag) const;

    /// The value as JSON text on many lines, four spaces to a level. Indentation stops growing at
    /// level 20, so that the text stays in proportion to the value.
    std::string toStyledString() const;

    /// A total order: by kind, then numbers by value, texts by bytes, arrays and objects element by
    /// element. Consistent with ==. @{
    bool operator<(const Value& other) const { return Compare(other) < 0; }
    bool operator==(const Value& other) const { return Compare(other) == 0; }
    bool operator!=(const Value& other) const { return Compare(other) != 0; }
    /// @}

    /// Adds a value at the end and returns the new element. A null value becomes an array first.
    /// Throws Error on a value that is neither null nor an array. @{
    Value& append(const Value& value) { return append(Value(value)); }
    Value& append(Value&& value);
    /// @}

    /// Numbers by themselves, since append(0) would otherwise be the null pointer below.
    template <class T, std::enable_if_t<std::is_arithmetic_v<T>, int> = 0>
    Value& append(T number) {
        return append(Value(number));
    }

    /// The same with a value made by `new`: it is taken over and deleted, also when this throws.
    /// Returns the new element. Throws Error on a null pointer.
    Value* append(Value* value);

    /// A walk over the elements of an array, or over the members of an object in the order of their
    /// keys. A walk over any other kind visits nothing. The value must not change meanwhile. @{
    ValueIterator begin();
    ValueIterator end();
    ValueConstIterator begin() const;
    ValueConstIterator end() const;
    /// @}

  private:
    friend struct detail::Slot;
    friend class detail::ParseHandler;
    friend class detail::Printer;
    friend class ValueIteratorBase;

    // A borrowed container belongs to another value; only a copy under way holds any.
    enum class Tag : unsigned char {
        null,
        boolean,
        negative,
        natural,
        real,
        time,
        borrowed,
        string,
        binary,
        array,
        object
    };
    struct Shallow {};

    Value(const Value& other, Shallow);
    bool HoldsText() const noexcept { return tag_ == Tag::string || tag_ == Tag::binary; }
    bool HoldsContainer() const noexcept { return tag_ >= Tag::array; }
    void OwnBorrowed();
    void ReleaseContainer() noexcept;
    // Moves the content of `other` into this value, which holds nothing to release.
    void Take(Value& other) noexcept {
        if (other.HoldsText()) {
            ::new (static_cast<void*>(&text_)) std::string(std::move(other.text_));
            other.text_.~basic_string();
        } else {
            plain_ = other.plain_;
        }
        tag_ = std::exchange(other.tag_, Tag::null);
    }
    int Compare(const Value& other) const;
    int ComparePlain(const Value& other) const noexcept;
    Value& Member(std::string_view key);
    const Value& Find(std::string_view key) const noexcept;
    detail::Array& ToArray(const char* operation);
    detail::Object& ToObject(const char* operation);
    long long AsInteger(const char* operation, long long lowest, long long highest) const;
    [[noreturn]] void FailKind(const char* operation, const char* wanted) const;
    [[noreturn]] void FailRange(const char* operation) const;

    // Negative integers and times are signed; all other integers are unsigned.
    union Plain {
        bool boolean;
        std::int64_t signedNumber;
        std::uint64_t unsignedNumber;
        double real;
        detail::Container* container;
        const detail::Container* borrowed;
    };

    Tag tag_;
    union {
        Plain plain_;
        std::string text_;
    };
};

/// Writes what toString(false) returns.
VXUTIL_EXPORT std::ostream& operator<<(std::ostream& output, const Value& value);

/// A place in a walk over a value:
///
///     for (auto i = v.begin(), end = v.end(); !i.isEqual(end); i.increment()) use(i.deref());
///
/// Stays usable as long as the value lives and no element is added to it.
class VXUTIL_EXPORT ValueIteratorBase {
  public:
    /// The element at this place, which must not be the end.
    Value& deref() const noexcept;
    /// Goes on to the next place. Not from the end.
    void increment() noexcept;
    /// Whether both are at the same place of one walk.
    bool isEqual(const ValueIteratorBase& other) const noexcept;

  protected:
    friend class Value;
    /// The first place of a walk, or its end.
    ValueIteratorBase(const Value& value, bool atEnd) noexcept;

  private:
    // An element of an array, or the tree iterator of an object; null on any other kind.
    bool inObject_ = false;
    void* place_ = nullptr;
};

/// What begin and end of a value give.
class VXUTIL_EXPORT ValueIterator : public ValueIteratorBase {
    friend class Value;
    using ValueIteratorBase::ValueIteratorBase;
};

/// What begin and end of a const value give: its elements are not to be written to.
class VXUTIL_EXPORT ValueConstIterator : public ValueIteratorBase {
    friend class Value;
    using ValueIteratorBase::ValueIteratorBase;
};

/// Reads JSON text.
///
/// Thread rule: a reader keeps nothing between calls.
class VXUTIL_EXPORT Reader {
  public:
    /// A reader without state. @{
    Reader() = default;
    ~Reader() = default;
    /// @}

    /// Reads the rest of `input`, which must be one JSON text and nothing else but white space,
    /// into `root`. Returns false and leaves `root` null if it is not, or if the stream fails.
    ///
    /// Integers from -2^63 to 2^64-1 stay integers; every other number becomes the nearest double,
    /// and one too large for that is an error, as is a zero with such an exponent (0e999). Of
    /// members with equal keys the last one wins. Bytes from 0x80 on are passed on as they are.
    ///
    /// With `extended`, the texts of binary and time values that toString writes turn back into
    /// these kinds. That holds for their exact form alone; anything else stays a plain object.
    ///
    /// Needs memory for the text beside the value. Linear, but for n log n on unsorted keys.
    bool parse(std::istream& input, Value& root, bool extended);
};

}  // namespace vxJson
