#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
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
template <typename Iterator>
class MemberRange;

namespace detail {
struct Container;
class Array;
struct Member;
class ParseHandler;
class Printer;

/// Whether T is a character type. Characters are not accepted as values: they might mean a number
/// or a string.
template <typename T>
constexpr bool kIsCharacter = std::is_same_v<T, char> || std::is_same_v<T, signed char> ||
                              std::is_same_v<T, unsigned char> || std::is_same_v<T, wchar_t> ||
#ifdef __cpp_char8_t
                              std::is_same_v<T, char8_t> ||
#endif
                              std::is_same_v<T, char16_t> || std::is_same_v<T, char32_t>;

/// The order and the hash of a key.
struct KeyHead {
    constexpr explicit KeyHead(std::uint64_t from) noexcept
        : prefix(from), tags((from * 0x9e3779b97f4a7c15 >> 56) * 0x0101010101010101) {}

    /// The first seven bytes of the key as a big-endian number, padded with zeros, and then the
    /// number of its bytes, at most eight. Where the prefixes of two keys differ, they order as the
    /// keys do; those of keys of up to seven bytes are equal only if the keys are.
    std::uint64_t prefix;
    /// Eight times the same hash of the prefix in one byte.
    std::uint64_t tags;
};

/// Returns the head of a literal. Has neither loops nor calls, so that the compiler computes it.
[[gnu::always_inline]] constexpr KeyHead HeadOfLiteral(const char* key, std::size_t size) noexcept {
    const auto at = [key, size](std::size_t i) {
        return i < size ? std::uint64_t{static_cast<unsigned char>(key[i])} << (56 - 8 * i) : 0;
    };
    return KeyHead(at(0) | at(1) | at(2) | at(3) | at(4) | at(5) | at(6) | (size < 8 ? size : 8));
}

// A call that is not optimised away does not compile.
#if __has_cpp_attribute(gnu::error)
[[gnu::error("the length exceeds the size of the array")]] void LengthExceedsTheArray();
#else
inline void LengthExceedsTheArray() {}
#endif
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

/// The error of an operation that the kind or the content of a value does not permit. The message
/// names the operation, the kind found and the one wanted.
class VXUTIL_EXPORT Error : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// A JSON value with two more kinds than JSON has: binary (bytes) and time (milliseconds since the
/// Unix epoch). It owns its content; a copy is deep.
///
/// Differences from similar classes:
/// - Strings are bytes; their encoding is not checked.
/// - Integers range from -2^63 to 2^64-1. 1 and 1.0 are different values of different kinds, and so
///   are 0.0 and -0.0; NaN equals NaN.
/// - Members of an object are sorted by the bytes of their keys, so that equal values print equal
///   text regardless of insertion order.
/// - A reference to a member stays valid while other members are added or removed. A reference to
///   an array element is invalidated by append.
/// - A const lookup of a missing entry returns the null value, which converts to an empty string, 0
///   or false.
/// - An operation that throws leaves the value, and an argument to be moved from, as they were.
/// - Nesting depth is limited by memory only; no operation recurses.
///
/// All operations that allocate may throw std::bad_alloc. The argument of an assignment or of
/// append may be the value itself or a part of it.
///
/// Thread safety: distinct values may be used concurrently; one value may be read concurrently
/// while no thread modifies it.
class VXUTIL_EXPORT Value {
  public:
    /// Creates the null value.
    constexpr Value() noexcept : tag_(Tag::null), plain_() {}

    /// Creates the empty value of a kind: null, false, 0, "", no elements. The flag is ignored.
    ///
    /// Throws Error if `type` is not a kind.
    Value(ValueType type, bool flag);

    /// Creates a string or, with binaryKind, a binary value. A `const char*` ends at its first zero
    /// byte.
    ///
    /// Throws Error on any other kind. @{
    Value(const std::string& bytes, ValueType type);
    Value(std::string_view bytes, ValueType type) : Value(std::string(bytes), type) {}
    Value(const char* bytes, ValueType type) : Value(std::string(bytes), type) {}
    /// @}

    /// Creates a binary value of exactly `length` bytes.
    ///
    /// Throws Error if `length` is negative, or greater than the size of an array. A constant that
    /// is greater does not compile where the compiler sees it. @{
    template <typename Pointer,
              std::enable_if_t<std::is_convertible_v<Pointer, const char*>, int> = 0>
    Value(Pointer bytes, int length) : Value(FromBytes(bytes, length, kUnknownSize)) {}
    template <std::size_t size>
    [[gnu::always_inline]] Value(const char (&bytes)[size], int length) : Value() {
        if (__builtin_constant_p(length > static_cast<long long>(size)) &&
            length > static_cast<long long>(size)) {
            detail::LengthExceedsTheArray();
        }
        *this = FromBytes(bytes, length, size);
    }
    /// @}

    /// Creates a time value; `time` is taken as signed milliseconds. The flag is ignored.
    Value(unsigned long long time, bool flag) noexcept : Value(Time(static_cast<long long>(time))) {
        static_cast<void>(flag);
    }

    /// Creates a time value. `milliseconds` are counted from the Unix epoch.
    static Value Time(long long milliseconds) noexcept {
        Value value;
        value.tag_ = Tag::time;
        value.plain_.signedNumber = milliseconds;
        return value;
    }

    /// Creates a binary value that takes over `bytes`.
    static Value Binary(std::string bytes) noexcept {
        Value value(std::move(bytes));
        value.tag_ = Tag::binary;
        return value;
    }

    /// Creates a bool, a double or an integer. @{
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
    /// Creates a string; a `const char*` ends at its first zero byte. @{
    Value(const char* text) : Value(std::string(text)) {}
    template <typename Text, std::enable_if_t<std::is_same_v<Text, std::string> ||
                                                  std::is_same_v<Text, std::string_view>,
                                              int> = 0>
    Value(const Text& text) : Value(std::string(text)) {}
    template <typename Text, std::enable_if_t<std::is_same_v<Text, std::string>, int> = 0>
    Value(Text&& text) noexcept : tag_(Tag::string), text_(std::forward<Text>(text)) {}
    /// @}
    // Templates, so that a list in braces, as in Value{{"text", 24}}, does not become a string that
    // is read beyond the end of the literal.

    // Prevents implicit conversion of pointers to bool, and of kinds and characters to integers.
    template <typename T, std::enable_if_t<!std::is_same_v<std::remove_cv_t<T>, char>, int> = 0>
    Value(T*) = delete;
    template <typename T, std::enable_if_t<detail::kIsCharacter<T>, int> = 0>
    Value(T) = delete;
    Value(std::nullptr_t) = delete;
    Value(ValueType) = delete;

    /// Copies deeply.
    ///
    /// Complexity: linear in the size of `other`.
    Value(const Value& other);

    /// Takes over the content of `other` and leaves it null.
    Value(Value&& other) noexcept : Value() { Take(other); }

    /// Releases the content. Needs no memory and does not recurse.
    ~Value() {
        if (HoldsText()) {
            text_.~basic_string();
        } else if (HoldsContainer()) {
            ReleaseContainer();
        }
    }

    /// Replaces kind and content. A move leaves `other` null.
    ///
    /// Returns the value itself. @{
    Value& operator=(const Value& other) { return *this = Value(other); }
    Value& operator=(Value&& other) noexcept;
    Value& operator=(bool value) noexcept { return Assign(Value(value)); }
    Value& operator=(double value) noexcept { return Assign(Value(value)); }
    Value& operator=(int value) noexcept { return Assign(Value(value)); }
    Value& operator=(long value) noexcept { return Assign(Value(value)); }
    Value& operator=(long long value) noexcept { return Assign(Value(value)); }
    Value& operator=(unsigned value) noexcept { return Assign(Value(value)); }
    Value& operator=(unsigned long value) noexcept { return Assign(Value(value)); }
    Value& operator=(unsigned long long value) noexcept { return Assign(Value(value)); }
    Value& operator=(const char* text) { return Assign(Value(text)); }
    Value& operator=(const std::string& text) { return Assign(Value(text)); }
    Value& operator=(std::string_view text) { return Assign(Value(text)); }
    Value& operator=(std::string&& text) noexcept { return Assign(Value(std::move(text))); }
    /// @}
    template <typename T, std::enable_if_t<!std::is_same_v<std::remove_cv_t<T>, char>, int> = 0>
    Value& operator=(T*) = delete;
    template <typename T, std::enable_if_t<detail::kIsCharacter<T>, int> = 0>
    Value& operator=(T) = delete;
    Value& operator=(ValueType) = delete;
    Value& operator=(std::nullptr_t) = delete;
    // A list in braces would become the bytes of a string, and {} could mean null, an empty array
    // or an empty object.
    Value& operator=(std::initializer_list<Value>) = delete;

    /// Finds the member for `key`, and adds it as null if it is absent; a null value becomes an
    /// object first.
    ///
    /// Returns the member.
    ///
    /// Throws Error on a value that is neither null nor an object, and if `key` is a null pointer.
    ///
    /// Complexity: logarithmic. @{
    [[gnu::always_inline]] Value& operator[](const char* key) {
        if (key == nullptr) FailNullKey();
        return FindOrAdd(key);
    }
    Value& operator[](const std::string& key) { return FindOrAdd(key); }
    Value& operator[](std::string_view key) { return FindOrAdd(key); }
    /// @}

    /// Returns the member for `key`, or the null value if there is none; so does a value of any
    /// other kind, and a null pointer.
    ///
    /// Complexity: logarithmic. @{
    // Always inline, so that the length of a literal is known to the compiler.
    [[gnu::always_inline]] const Value& operator[](const char* key) const noexcept {
        if (key == nullptr) return Absent();
        const std::size_t size = __builtin_strlen(key);
        if (!__builtin_constant_p(size)) return Find({key, size});
        return Find(detail::HeadOfLiteral(key, size), {key, size});
    }
    const Value& operator[](const std::string& key) const noexcept { return Find(key); }
    const Value& operator[](std::string_view key) const noexcept { return Find(key); }
    /// @}

    /// Returns whether the value is an object with a member for `key`. @{
    bool isMember(const char* key) const noexcept { return &(*this)[key] != &Absent(); }
    bool isMember(std::string_view key) const noexcept { return &Find(key) != &Absent(); }
    /// @}

    /// Removes the member for `key`. References to other members stay valid.
    ///
    /// Returns whether the value was an object with such a member. @{
    bool removeMember(const char* key) noexcept {
        return key != nullptr && removeMember(std::string_view(key));
    }
    bool removeMember(std::string_view key) noexcept;
    /// @}

    /// Finds the element at `index`. An array that is too short is extended with nulls, and a null
    /// value becomes an array first.
    ///
    /// Returns the element.
    ///
    /// Throws Error if `index` is negative, and on a value that is neither null nor an array.
    Value& operator[](int index);

    /// Returns the element at `index`, or the null value if there is none or the value is of
    /// another kind.
    const Value& operator[](int index) const noexcept;

    /// Conversions. The null value converts to an empty string, 0 or false. Integers that are too
    /// large keep their low bits; any other conversion that would lose something throws Error.
    /// @{

    /// Returns the bytes of a string or binary value, "true" or "false", or a number as printed.
    std::string asString() const;
    /// Returns the low 32 bits of an integer or a time as two's complement, a whole double in
    /// range, or 0 or 1 for a bool.
    int asInt() const {
        return tag_ == Tag::natural ? static_cast<int>(plain_.unsignedNumber) : ConvertToInt();
    }
    /// Returns the low 64 bits of an integer as two's complement, the milliseconds of a time, a
    /// whole double in range, or 0 or 1 for a bool.
    long long asInt64() const;
    /// Returns the value of a bool, or whether a number is other than 0.
    bool asBool() const;
    /// Returns the milliseconds of a time, the low 64 bits of an integer as two's complement, or a
    /// whole double in range.
    long long asTime() const;
    /// Returns a double, the double nearest to an integer, or 0 or 1 for a bool.
    double asDouble() const;
    /// Returns the bytes of a binary or string value, valid until the value is modified.
    const std::string& asBinary() const;
    /// @}

    /// Returns the kind of the value.
    ValueType type() const noexcept;
    /// Returns whether the value is of this kind. Null is neither an array nor an object. @{
    bool isNull() const noexcept { return tag_ == Tag::null; }
    bool isBool() const noexcept { return tag_ == Tag::boolean; }
    bool isInteger() const noexcept { return tag_ == Tag::negative || tag_ == Tag::natural; }
    bool isDouble() const noexcept { return tag_ == Tag::real; }
    bool isString() const noexcept { return tag_ == Tag::string; }
    bool isBinary() const noexcept { return tag_ == Tag::binary; }
    bool isTime() const noexcept { return tag_ == Tag::time; }
    bool isArray() const noexcept { return tag_ == Tag::array; }
    bool isObject() const noexcept { return tag_ == Tag::object; }
    /// @}

    /// Returns true for null and for an array or object without elements, false for anything else,
    /// including "".
    bool empty() const noexcept { return isNull() || ((isArray() || isObject()) && size() == 0); }

    /// Returns the number of elements or members; 0 for any kind but array and object.
    std::uint32_t size() const noexcept;

    /// Returns the value as JSON text: compact with false, as toStyledString with true. Binary and
    /// time are written as {"$binary":{"base64":"...","subType":"00"}} and
    /// {"$date":{"$numberLong":"..."}}. A double is written as the shortest text that reads back as
    /// itself: in decimal notation from 1e-6 to below 1e21, otherwise with an exponent. NaN and the
    /// infinities, which JSON lacks, are written as null. Bytes from 0x80 on are written
    /// unchanged.
    std::string toString(bool flag) const;

    /// Returns the value as JSON text on many lines, four spaces to a level. Indentation stops
    /// growing at level 20, so that the size of the text is proportional to that of the value.
    std::string toStyledString() const;

    /// Compares in a total order: by kind, then numbers by value, strings by bytes, arrays and
    /// objects element by element. Consistent with ==. @{
    bool operator<(const Value& other) const { return Compare(other) < 0; }
    bool operator==(const Value& other) const { return Compare(other) == 0; }
    bool operator!=(const Value& other) const { return Compare(other) != 0; }
    /// @}

    /// Adds a value at the end; a null value becomes an array first.
    ///
    /// Returns the new element.
    ///
    /// Throws Error on a value that is neither null nor an array. @{
    Value& append(const Value& value) { return append(Value(value)); }
    Value& append(Value&& value);
    // Prevents append(0) from passing a null pointer.
    template <typename T,
              std::enable_if_t<std::is_arithmetic_v<T> && !detail::kIsCharacter<T>, int> = 0>
    Value& append(T number) {
        return append(Value(number));
    }
    /// @}

    /// Adds a value created with `new` at the end. Takes ownership of it, also if this throws.
    ///
    /// Returns the new element.
    ///
    /// Throws Error on a null pointer, and as above.
    Value* append(Value* value);
    Value* append(std::nullptr_t) = delete;

    /// Returns iterators over the elements of an array, or over the member values of an object in
    /// the order of their keys; an empty range for any other kind. Adding or removing elements
    /// invalidates them. @{
    ValueIterator begin();
    ValueIterator end();
    ValueConstIterator begin() const;
    ValueConstIterator end() const;
    /// @}

    /// Returns the members of an object in the order of their keys, for
    /// `for (auto [key, value] : v.members())`; an empty range for any other kind. @{
    MemberRange<ValueIterator> members() &;
    MemberRange<ValueConstIterator> members() const&;
    MemberRange<ValueConstIterator> members() const&& = delete;
    /// @}

  private:
    friend class detail::Array;
    friend struct detail::Member;
    friend class detail::ParseHandler;
    friend class detail::Printer;
    friend class ValueIteratorBase;

    // A borrowed container belongs to another value; it occurs only while a value is copied.
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

    Value(Tag tag, detail::Container* owned) noexcept : tag_(tag), plain_() {
        plain_.container = owned;
    }
    bool HoldsText() const noexcept { return tag_ == Tag::string || tag_ == Tag::binary; }
    bool HoldsContainer() const noexcept { return tag_ >= Tag::array; }
    // Assigns a number or a string; inline for a target that holds nothing to release.
    Value& Assign(Value&& other) noexcept {
        if (HoldsText() || HoldsContainer()) return *this = std::move(other);
        Take(other);
        return *this;
    }
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
    // Copies `other` into this value, which holds nothing to release, but borrows a container.
    void Borrow(const Value& other) {
        if (other.HoldsText()) {
            ::new (static_cast<void*>(&text_)) std::string(other.text_);
        } else {
            plain_ = other.plain_;
        }
        tag_ = other.HoldsContainer() ? Tag::borrowed : other.tag_;
    }
    void OwnBorrowed();
    int Compare(const Value& other) const;
    int ComparePlain(const Value& other) const noexcept;
    Value& FindOrAdd(std::string_view key);
    const Value& Find(std::string_view key) const noexcept;
    const Value& Find(detail::KeyHead head, std::string_view key) const noexcept;
    static const Value& Absent() noexcept;
    static constexpr std::size_t kUnknownSize = static_cast<std::size_t>(-1);
    static Value FromBytes(const char* bytes, int length, std::size_t size);
    detail::Array& MakeRoom(std::size_t count);
    int ConvertToInt() const;
    long long AsInteger(const char* operation) const;
    [[noreturn]] void FailKind(const char* operation, const char* wanted) const;
    [[noreturn]] void FailRange(const char* operation) const;
    [[noreturn]] static void FailNullKey();

    // Negative integers and times are signed; all other integers are unsigned.
    union Plain {
        bool boolean;
        std::int64_t signedNumber;
        std::uint64_t unsignedNumber;
        double real;
        detail::Container* container;
    };

    Tag tag_;
    union {
        Plain plain_;
        std::string text_;
    };
};

/// Writes the text of toString(false).
VXUTIL_EXPORT std::ostream& operator<<(std::ostream& output, const Value& value);

}  // namespace vxJson

#include <VxUtil/Reader.h>
#include <VxUtil/ValueIterator.h>
