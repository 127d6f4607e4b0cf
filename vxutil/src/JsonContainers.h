#pragma once

#include <VxUtil/vxJson.h>
#include <endian.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <vector>

// What stands behind the array and object kinds of vxJson::Value.

namespace vxJson {

inline Value::Value(const Value& other, Shallow) : tag_(other.tag_), plain_() {
    if (HoldsText()) {
        ::new (static_cast<void*>(&text_)) std::string(other.text_);
    } else if (HoldsContainer()) {
        tag_ = Tag::borrowed;
        plain_.borrowed = other.plain_.container;
    } else {
        plain_ = other.plain_;
    }
}

namespace detail {

inline std::uint64_t LoadFour(const char* bytes) noexcept {
    std::uint32_t number = 0;
    std::memcpy(&number, bytes, sizeof number);
    return be32toh(number);
}

/// Up to eight bytes of a text from `position` on as a big-endian number, padded with zeros. What
/// is shorter is put together from overlapping loads: lookups spend their time here.
inline std::uint64_t LoadBytes(std::string_view text, std::size_t position) noexcept {
    if (text.size() <= position) return 0;
    const char* const bytes = text.data() + position;
    const std::size_t size = text.size() - position;
    if (size >= 8) return LoadFour(bytes) << 32 | LoadFour(bytes + 4);
    if (size >= 4) return LoadFour(bytes) << 32 | LoadFour(bytes + size - 4) << (64 - 8 * size);
    const auto at = [bytes](std::size_t i) {
        return std::uint64_t{static_cast<unsigned char>(bytes[i])} << (56 - 8 * i);
    };
    return at(0) | at(size / 2) | at(size - 1);
}

/// A key with its first sixteen bytes as two numbers: where these differ between two keys, they
/// order as the texts do.
template <class Text>
struct BasicKey {
    explicit BasicKey(std::string_view key)
        : high(LoadBytes(key, 0)), low(LoadBytes(key, 8)), text(key) {}
    explicit BasicKey(const BasicKey<std::string_view>& key)
        : high(key.high), low(key.low), text(key.text) {}

    std::uint64_t high;
    std::uint64_t low;
    Text text;
};

/// The key of a member.
using Key = BasicKey<std::string>;

/// A key that someone else owns, for lookups.
using KeyView = BasicKey<std::string_view>;

/// Orders keys by their bytes. Mostly the numbers decide, without a look at the texts.
struct ByKey {
    using is_transparent = void;

    template <class A, class B>
    bool operator()(const BasicKey<A>& a, const BasicKey<B>& b) const noexcept {
        if (a.high != b.high) return a.high < b.high;
        if (a.low != b.low) return a.low < b.low;
        const std::size_t shorter = std::min(a.text.size(), b.text.size());
        if (shorter > 16) {
            const int order = std::memcmp(a.text.data() + 16, b.text.data() + 16, shorter - 16);
            if (order != 0) return order < 0;
        }
        return a.text.size() < b.text.size();
    }
};

/// A value inside a container. Its copy is shallow: a container in it is borrowed, so that a vector
/// or a map of slots copies one level only, and the level below is dealt with afterwards.
struct Slot {
    Slot() = default;
    explicit Slot(Value&& from) noexcept : value(std::move(from)) {}
    Slot(Slot&&) noexcept = default;
    Slot(const Slot& other) : value(other.value, Value::Shallow()) {}
    Slot& operator=(Slot&&) noexcept = default;
    Slot& operator=(const Slot&) = delete;
    ~Slot() = default;

    Value value;
};

using Elements = std::vector<Slot>;
using Members = std::map<Key, Slot, ByKey>;

/// An array or an object. `next` strings containers together that wait for their turn in a copy or
/// a release, so that neither needs memory for a stack.
struct Container {
    explicit Container(bool object) noexcept : isObject(object) {}
    Container(const Container& other) noexcept : isObject(other.isObject) {}
    Container& operator=(const Container&) = delete;
    ~Container() = default;

    const bool isObject;
    Container* next = nullptr;
};

struct Array : Container {
    Array() noexcept : Container(false) {}

    Elements elements;
};

struct Object : Container {
    Object() noexcept : Container(true) {}

    Members members;
};

template <class Visit>
void VisitChildren(Container& container, Visit visit) {
    if (container.isObject) {
        for (auto& [key, slot] : static_cast<Object&>(container).members) visit(slot.value);
    } else {
        for (Slot& slot : static_cast<Array&>(container).elements) visit(slot.value);
    }
}

/// A place in a walk over the children of an array or object value.
class Cursor {
  public:
    explicit Cursor(const Container& container) noexcept : inObject_(container.isObject) {
        if (inObject_) {
            const Members& members = static_cast<const Object&>(container).members;
            member_ = members.begin();
            lastMember_ = members.end();
        } else {
            const Elements& elements = static_cast<const Array&>(container).elements;
            element_ = elements.data();
            lastElement_ = element_ + elements.size();
        }
    }

    bool InObject() const noexcept { return inObject_; }
    bool AtEnd() const noexcept {
        return inObject_ ? member_ == lastMember_ : element_ == lastElement_;
    }
    const std::string& GetKey() const noexcept { return member_->first.text; }
    const Value& GetValue() const noexcept {
        return inObject_ ? member_->second.value : element_->value;
    }
    void Advance() noexcept {
        if (inObject_) {
            ++member_;
        } else {
            ++element_;
        }
    }

  private:
    bool inObject_;
    const Slot* element_ = nullptr;
    const Slot* lastElement_ = nullptr;
    Members::const_iterator member_;
    Members::const_iterator lastMember_;
};

}  // namespace detail

}  // namespace vxJson
