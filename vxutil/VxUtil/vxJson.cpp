#include <VxUtil/vxJson.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <vector>

#include "vxutil/detail/Array.h"
#include "vxutil/detail/Cursor.h"
#include "vxutil/detail/Object.h"

namespace vxJson {

using detail::Array;
using detail::Container;
using detail::Cursor;
using detail::Object;

// The capacity of an array that is created for its first element.
constexpr std::size_t kFirstElements = 2;

static_assert(sizeof(Value) == sizeof(std::string) + sizeof(void*));

namespace {

/// The null value that lookups of missing entries return. It needs no initialization and is never
/// destroyed, so that static objects may use it before main and after its end.
union AbsentValue {
    constexpr AbsentValue() noexcept : value() {}
    ~AbsentValue() {}

    Value value;
};
const AbsentValue kAbsent;

/// The kinds of the tags, in their order.
constexpr struct {
    ValueType type;
    const char* name;
} kKinds[] = {{nullKind, "null"},       {boolKind, "bool"},     {integerKind, "integer"},
              {integerKind, "integer"}, {doubleKind, "double"}, {timeKind, "time"},
              {nullKind, "null"},       {stringKind, "string"}, {binaryKind, "binary"},
              {arrayKind, "array"},     {objectKind, "object"}};

template <typename T>
int Order(const T& a, const T& b) noexcept {
    return a < b ? -1 : (b < a ? 1 : 0);
}

// All NaNs are equal and come after all other numbers; -0.0 comes before 0.0.
int OrderDoubles(double a, double b) noexcept {
    if (std::isnan(a) || std::isnan(b)) return Order(std::isnan(a), std::isnan(b));
    if (a == b) return Order(std::signbit(b), std::signbit(a));
    return a < b ? -1 : 1;
}

}  // namespace

Value::Value(ValueType type, bool /*flag*/) : Value() {
    if (type == boolKind) {
        *this = false;
    } else if (type == integerKind) {
        *this = 0;
    } else if (type == doubleKind) {
        *this = 0.0;
    } else if (type == timeKind) {
        *this = Time(0);
    } else if (type == stringKind || type == binaryKind) {
        *this = Value(std::string(), type);
    } else if (type == arrayKind) {
        *this = Value(Tag::array, Array::Make(0).release());
    } else if (type == objectKind) {
        *this = Value(Tag::object, Object::Make(0).release());
    } else if (type != nullKind) {
        throw Error("Value: " + std::to_string(static_cast<int>(type)) + " is not a kind");
    }
}

Value::Value(const std::string& bytes, ValueType type) : Value(bytes) {
    if (type == binaryKind) {
        tag_ = Tag::binary;
    } else if (type != stringKind) {
        throw Error("Value: bytes are a string or a binary");
    }
}

Value Value::FromBytes(const char* bytes, int length, std::size_t size) {
    if (length < 0) throw Error("Value: negative length " + std::to_string(length));
    const auto count = static_cast<std::size_t>(length);
    if (count > size) {
        throw Error("Value: length " + std::to_string(length) + " exceeds the array of " +
                    std::to_string(size) + " bytes");
    }
    return Binary(std::string(bytes, count));
}

// A shallow copy of a container borrows its child containers from the source. The walk then
// replaces each of them by a shallow copy and continues inside that copy, while it is still in the
// cache. The destructor ignores borrowed containers, so a failure leaks nothing.
Value::Value(const Value& other) : Value() {
    Borrow(other);
    if (tag_ != Tag::borrowed) return;
    OwnBorrowed();
    std::vector<Cursor> open = {Cursor(*plain_.container)};
    while (!open.empty()) {
        Cursor at = open.back();
        while (!at.IsAtEnd() && at.GetValue().tag_ != Tag::borrowed) at.Advance();
        if (at.IsAtEnd()) {
            open.pop_back();
            continue;
        }
        auto& child = const_cast<Value&>(at.GetValue());
        at.Advance();
        open.back() = at;
        child.OwnBorrowed();
        open.emplace_back(*child.plain_.container);
    }
}

Value& Value::operator=(Value&& other) noexcept {
    // The third value is needed because `other` may be a part of this one.
    Value taken(std::move(other));
    Value old(std::move(*this));
    Take(taken);
    return *this;
}

void Value::OwnBorrowed() {
    Container*& container = plain_.container;
    if (container->isObject) {
        container = Object::MakeShallow(*static_cast<Object*>(container)).release();
        tag_ = Tag::object;
    } else {
        container = Array::MakeShallow(*static_cast<Array*>(container)).release();
        tag_ = Tag::array;
    }
}

// Works from the top: the child containers of a container are queued before it is deleted.
void Value::ReleaseContainer() noexcept {
    Container* pending = plain_.container;
    pending->link = nullptr;
    while (pending != nullptr) {
        Container* const container = std::exchange(pending, static_cast<Container*>(pending->link));
        for (Cursor at(*container); !at.IsAtEnd(); at.Advance()) {
            auto& child = const_cast<Value&>(at.GetValue());
            if (!child.HoldsContainer()) continue;
            child.tag_ = Tag::null;
            child.plain_.container->link = pending;
            pending = child.plain_.container;
        }
        if (container->isObject) {
            delete static_cast<Object*>(container);
        } else {
            delete static_cast<Array*>(container);
        }
    }
}

Value& Value::FindOrAdd(std::string_view key) {
    if (!isNull() && !isObject()) FailKind("operator[]", "an object");
    if (isObject()) return static_cast<Object*>(plain_.container)->FindOrAdd(key);
    auto object = Object::Make(Object::kFirstMembers);
    Value& member = object->FindOrAdd(key);
    *this = Value(Tag::object, object.release());
    return member;
}

const Value& Value::Find(std::string_view key) const noexcept {
    return Find(detail::KeyHead(detail::KeyPrefix(key)), key);
}

const Value& Value::Find(detail::KeyHead head, std::string_view key) const noexcept {
    if (!isObject()) return kAbsent.value;
    return static_cast<const Object*>(plain_.container)->Find(head, key, kAbsent.value);
}

const Value& Value::Absent() noexcept {
    return kAbsent.value;
}

bool Value::removeMember(std::string_view key) noexcept {
    return isObject() && static_cast<Object*>(plain_.container)->Remove(key);
}

// Returns the array of this value, with a capacity of at least `count` elements. A null value
// becomes an array.
Array& Value::MakeRoom(std::size_t count) {
    if (isNull()) {
        *this = Value(Tag::array, Array::Make(std::max(count, kFirstElements)).release());
    } else if (auto& array = *static_cast<Array*>(plain_.container); array.GetCapacity() < count) {
        // Doubling would hold three times the elements while they are moved.
        auto larger =
            Array::Make(std::max(count, array.GetCapacity() + array.GetCapacity() / 2 + 1));
        for (Value& element : array) larger->Append(std::move(element));
        plain_.container = larger.release();
        delete &array;
    }
    return *static_cast<Array*>(plain_.container);
}

Value& Value::operator[](int index) {
    if (!isNull() && !isArray()) FailKind("operator[]", "an array");
    if (index < 0) throw Error("operator[]: negative index " + std::to_string(index));
    const auto position = static_cast<std::size_t>(index);
    Array& array = MakeRoom(position + 1);
    while (array.size <= position) array.Append(Value());
    return array.begin()[position];
}

const Value& Value::operator[](int index) const noexcept {
    if (!isArray()) return kAbsent.value;
    const auto& array = static_cast<const Array&>(*plain_.container);
    // A negative index, converted to unsigned, is beyond the end.
    const auto position = static_cast<std::size_t>(index);
    return position < array.size ? array.begin()[position] : kAbsent.value;
}

Value& Value::append(Value&& value) {
    if (!isNull() && !isArray()) FailKind("append", "an array");
    // Moved out first because `value` may be this value or a part of it.
    Value taken(std::move(value));
    try {
        return MakeRoom(std::size_t{size()} + 1).Append(std::move(taken));
    } catch (...) {
        value = std::move(taken);
        throw;
    }
}

Value* Value::append(Value* value) {
    if (value == nullptr) throw Error("append: null pointer");
    const std::unique_ptr<Value> owned(value);
    return &append(std::move(*owned));
}

std::string Value::asString() const {
    switch (tag_) {
        case Tag::null:
            return std::string();
        case Tag::string:
        case Tag::binary:
            return text_;
        case Tag::time:
        case Tag::array:
        case Tag::object:
            FailKind("asString", "a string, a binary, a number or a bool");
        default:
            return toString(false);
    }
}

const std::string& Value::asBinary() const {
    if (isNull()) {
        // Never destroyed, as kAbsent; a string cannot be a constant.
        alignas(std::string) static unsigned char storage[sizeof(std::string)];
        static const std::string& empty = *::new (static_cast<void*>(storage)) std::string();
        return empty;
    }
    if (!HoldsText()) FailKind("asBinary", "a binary or a string");
    return text_;
}

int Value::ConvertToInt() const {
    const long long number = AsInteger("asInt");
    const bool inRange =
        number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max();
    if (tag_ == Tag::real && !inRange) FailRange("asInt");
    return static_cast<int>(number);
}

long long Value::asInt64() const {
    return AsInteger("asInt64");
}

long long Value::asTime() const {
    if (tag_ == Tag::boolean) FailKind("asTime", "a time");
    return AsInteger("asTime");
}

// The narrowing conversions of integers, here and in asInt and ConvertToInt, keep the low bits.
long long Value::AsInteger(const char* operation) const {
    switch (tag_) {
        case Tag::null:
            return 0;
        case Tag::boolean:
            return plain_.boolean ? 1 : 0;
        case Tag::negative:
        case Tag::time:
            return plain_.signedNumber;
        case Tag::natural:
            return static_cast<long long>(plain_.unsignedNumber);
        case Tag::real:
            // Both bounds are exact: -2^63 and 2^63.
            if (!(plain_.real >= -0x1p63 && plain_.real < 0x1p63) ||
                plain_.real != std::trunc(plain_.real)) {
                FailRange(operation);
            }
            return static_cast<long long>(plain_.real);
        default:
            FailKind(operation, "a number");
    }
}

bool Value::asBool() const {
    if (tag_ == Tag::real) return plain_.real != 0;
    if (tag_ > Tag::real) FailKind("asBool", "a bool or a number");
    return AsInteger("asBool") != 0;
}

double Value::asDouble() const {
    if (tag_ == Tag::real) return plain_.real;
    if (tag_ > Tag::real) FailKind("asDouble", "a number");
    if (tag_ == Tag::natural) return static_cast<double>(plain_.unsignedNumber);
    return static_cast<double>(AsInteger("asDouble"));
}

void Value::FailKind(const char* operation, const char* wanted) const {
    throw Error(std::string(operation) + ": found kind " +
                kKinds[static_cast<std::size_t>(tag_)].name + ", wanted " + wanted);
}

void Value::FailRange(const char* operation) const {
    throw Error(std::string(operation) + ": double " + toString(false) +
                " is not a whole number in range");
}

void Value::FailNullKey() {
    throw Error("operator[]: null pointer as key");
}

ValueType Value::type() const noexcept {
    return kKinds[static_cast<std::size_t>(tag_)].type;
}

std::uint32_t Value::size() const noexcept {
    return HoldsContainer() ? plain_.container->size : 0;
}

int Value::Compare(const Value& other) const {
    struct Pair {
        Cursor a;
        Cursor b;
    };
    std::vector<Pair> open;
    const Value* a = this;
    const Value* b = &other;
    for (;;) {
        // The tags are numbered in the order of the kinds, negative integers before the others.
        if (const int order = Order(a->tag_, b->tag_); order != 0) return order;
        if (a->HoldsContainer()) {
            open.push_back({Cursor(*a->plain_.container), Cursor(*b->plain_.container)});
        } else if (const int order = a->ComparePlain(*b); order != 0) {
            return order;
        }
        for (; !open.empty(); open.pop_back()) {
            const Pair& top = open.back();
            if (!top.a.IsAtEnd() && !top.b.IsAtEnd()) break;
            if (const int order = Order(top.b.IsAtEnd(), top.a.IsAtEnd()); order != 0) return order;
        }
        if (open.empty()) return 0;
        Pair& top = open.back();
        if (top.a.IsInObject()) {
            const int order = top.a.GetKey().compare(top.b.GetKey());
            if (order != 0) return order;
        }
        a = &top.a.GetValue();
        b = &top.b.GetValue();
        top.a.Advance();
        top.b.Advance();
    }
}

int Value::ComparePlain(const Value& other) const noexcept {
    switch (tag_) {
        case Tag::boolean:
            return Order(plain_.boolean, other.plain_.boolean);
        case Tag::negative:
        case Tag::time:
            return Order(plain_.signedNumber, other.plain_.signedNumber);
        case Tag::natural:
            return Order(plain_.unsignedNumber, other.plain_.unsignedNumber);
        case Tag::real:
            return OrderDoubles(plain_.real, other.plain_.real);
        case Tag::string:
        case Tag::binary:
            return text_.compare(other.text_);
        default:
            return 0;
    }
}

}  // namespace vxJson
