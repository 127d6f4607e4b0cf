#pragma once

#include <VxUtil/vxJson.h>

namespace vxJson {

namespace detail {

/// An array or an object of `size` elements or members. `link` chains the containers whose release
/// is pending, so that a release needs no memory for a stack; until then, an object uses it.
struct Container {
    explicit Container(bool object) noexcept : isObject(object) {}
    Container(const Container& other) noexcept : isObject(other.isObject) {}
    Container& operator=(const Container&) = delete;
    ~Container() = default;

    void* link = nullptr;
    std::uint32_t size = 0;
    const bool isObject;
};

/// A value inside a container. A copy is shallow: it borrows the container that it holds, if any.
/// Copying an array or an object therefore copies one level; deeper levels are copied afterwards.
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

}  // namespace detail

inline Value::Value(detail::Container& owned) noexcept
    : tag_(owned.isObject ? Tag::object : Tag::array), plain_() {
    plain_.container = &owned;
}

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

}  // namespace vxJson
