#pragma once

#include <algorithm>
#include <memory>

#include "Container.h"
#include "Object.h"

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

    Array(const Array&) = delete;
    Array& operator=(const Array&) = delete;
    ~Array() { std::destroy(begin(), end()); }

    std::size_t Capacity() const noexcept { return capacity_; }
    Slot* begin() noexcept { return reinterpret_cast<Slot*>(this + 1); }
    Slot* end() noexcept { return begin() + size; }
    const Slot* begin() const noexcept { return reinterpret_cast<const Slot*>(this + 1); }
    const Slot* end() const noexcept { return begin() + size; }

    /// Constructs an element at the end; the array must not be full. Returns the value of the
    /// element.
    template <typename... From>
    Value& Append(From&&... from) {
        Slot* const slot = ::new (static_cast<void*>(end())) Slot(std::forward<From>(from)...);
        ++size;
        return slot->value;
    }

    // NOLINTNEXTLINE(misc-new-delete-overloads): belongs to the operator new with a capacity
    static void operator delete(void* array) { ::operator delete(array); }

  private:
    explicit Array(std::uint32_t capacity) noexcept : Container(false), capacity_(capacity) {}
    static void* operator new(std::size_t size, std::uint32_t capacity) {
        return ::operator new(size + capacity * sizeof(Slot));
    }
    static void operator delete(void* array, std::uint32_t) { ::operator delete(array); }

    const std::uint32_t capacity_;
};

template <typename Visit>
void VisitChildren(Container& container, Visit visit) {
    if (container.isObject) {
        static_cast<Object&>(container).ForEach(
            [&visit](Member& member) { visit(member.slot.value); });
    } else {
        for (Slot& slot : static_cast<Array&>(container)) visit(slot.value);
    }
}

/// A position among the elements of an array or the members of an object.
class Cursor {
  public:
    explicit Cursor(const Container& container) noexcept {
        if (container.isObject) {
            object_ = &static_cast<const Object&>(container);
            EnterChunk();
        } else {
            element_ = static_cast<const Array&>(container).begin();
            elementEnd_ = static_cast<const Array&>(container).end();
        }
    }

    bool InObject() const noexcept { return object_ != nullptr; }
    bool AtEnd() const noexcept {
        return InObject() ? entry_ == entryEnd_ : element_ == elementEnd_;
    }
    const std::string& GetKey() const noexcept { return entry_->member->key; }
    const Value& GetValue() const noexcept {
        return InObject() ? entry_->member->slot.value : element_->value;
    }
    void Advance() noexcept {
        if (!InObject()) {
            ++element_;
        } else if (++entry_ == entryEnd_ && chunk_ + 1 < object_->ChunkCount()) {
            ++chunk_;
            EnterChunk();
        }
    }

  private:
    void EnterChunk() noexcept {
        const Object::Chunk& chunk = object_->GetChunk(chunk_);
        entry_ = chunk.entries;
        entryEnd_ = entry_ + chunk.count;
    }

    const Object* object_ = nullptr;
    std::size_t chunk_ = 0;
    union {
        const Object::Entry* entry_;
        const Slot* element_;
    };
    union {
        const Object::Entry* entryEnd_;
        const Slot* elementEnd_;
    };
};

}  // namespace vxJson::detail
