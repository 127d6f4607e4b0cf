#pragma once

#include <VxUtil/vxJson.h>

#include <algorithm>
#include <memory>

#include "vxutil/detail/Container.h"

namespace vxJson::detail {

/// An array, followed by its elements in the same allocation. Its capacity is fixed: a full array
/// is replaced by a larger one.
class Array : public Container {
  public:
    /// Creates an empty array with a capacity of `capacity` elements. Throws std::bad_alloc if they
    /// cannot be counted in 32 bits.
    static std::unique_ptr<Array> Make(std::size_t capacity) {
        const auto room = static_cast<std::uint32_t>(capacity);
        if (room != capacity) throw std::bad_alloc();
        return std::unique_ptr<Array>(new (room) Array(room));
    }

    /// Returns a copy in which all containers are borrowed.
    static std::unique_ptr<Array> MakeShallow(const Array& other) {
        auto array = Make(other.size);
        for (const Value& element : other) array->Append(Value()).Borrow(element);
        return array;
    }

    Array(const Array&) = delete;
    Array& operator=(const Array&) = delete;
    ~Array() { std::destroy(begin(), end()); }

    std::size_t GetCapacity() const noexcept { return capacity_; }
    Value* begin() noexcept { return reinterpret_cast<Value*>(this + 1); }
    Value* end() noexcept { return begin() + size; }
    const Value* begin() const noexcept { return reinterpret_cast<const Value*>(this + 1); }
    const Value* end() const noexcept { return begin() + size; }

    /// Adds an element at the end; the array must not be full. Returns the element.
    Value& Append(Value&& value) noexcept {
        auto* const element = ::new (static_cast<void*>(end())) Value(std::move(value));
        ++size;
        return *element;
    }

    // NOLINTNEXTLINE(misc-new-delete-overloads): belongs to the operator new with a capacity
    static void operator delete(void* array) { ::operator delete(array); }

  private:
    explicit Array(std::uint32_t capacity) noexcept : Container(false), capacity_(capacity) {}
    static void* operator new(std::size_t size, std::uint32_t capacity) {
        return ::operator new(size + capacity * sizeof(Value));
    }
    static void operator delete(void* array, std::uint32_t) { ::operator delete(array); }

    const std::uint32_t capacity_;
};

}  // namespace vxJson::detail
