#pragma once

#include <VxUtil/vxJson.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <vector>

// What stands behind the array and object kinds of vxJson::Value.
namespace vxJson::detail {

/// The first eight bytes of a text as a big-endian number, padded with zeros: where two of them
/// differ, they order as the texts do.
inline std::uint64_t KeyPrefix(std::string_view text) noexcept {
    const std::size_t size = std::min<std::size_t>(text.size(), 8);
    std::uint64_t prefix = 0;
    for (std::size_t i = 0; i < size; ++i) {
        prefix = prefix << 8 | static_cast<unsigned char>(text[i]);
    }
    return size == 0 ? 0 : prefix << (8 * (8 - size));
}

/// A key that someone else owns, for lookups.
struct KeyView {
    explicit KeyView(std::string_view key) noexcept : prefix(KeyPrefix(key)), text(key) {}

    std::uint64_t prefix;
    std::string_view text;
};

struct Key {
    explicit Key(const KeyView& key) : prefix(key.prefix), text(key.text) {}

    std::uint64_t prefix;
    std::string text;
};

/// Orders keys by their bytes. Mostly the prefixes decide, without a look at the texts.
struct ByKey {
    using is_transparent = void;

    template <class A, class B>
    bool operator()(const A& a, const B& b) const noexcept {
        if (a.prefix != b.prefix) return a.prefix < b.prefix;
        return std::string_view(a.text) < std::string_view(b.text);
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

}  // namespace vxJson::detail
