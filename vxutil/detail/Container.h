#pragma once

#include <cstdint>

namespace vxJson::detail {

/// An array or an object of `size` elements or members. `link` chains the containers whose release
/// is pending, so that a release needs no memory for a stack; until then, an object uses it.
struct Container {
    explicit Container(bool object) noexcept : isObject(object) {}
    Container(const Container&) = delete;
    Container& operator=(const Container&) = delete;
    ~Container() = default;

    void* link = nullptr;
    std::uint32_t size = 0;
    const bool isObject;
};

}  // namespace vxJson::detail
