#include <cstddef>
#include <cstdlib>
#include <new>

#include "tests/memory/FaultCounter.h"

// The replaceable allocation functions. The forms that sanitizers bring along must all be replaced,
// or a block would come from one allocator and go to the other.

namespace {

void* Allocate(std::size_t size) noexcept {
    if (faultCounter.Strikes()) return nullptr;
    void* const block = std::malloc(size == 0 ? 1 : size);
    if (block != nullptr) ++faultCounter.live;
    return block;
}

void* Allocate(std::size_t size, std::align_val_t alignment) noexcept {
    if (faultCounter.Strikes()) return nullptr;
    const auto step = static_cast<std::size_t>(alignment);
    void* const block = std::aligned_alloc(step, (size + step - 1) / step * step);
    if (block != nullptr) ++faultCounter.live;
    return block;
}

void* Checked(void* block) {
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

void Release(void* block) noexcept {
    if (block == nullptr) return;
    --faultCounter.live;
    std::free(block);
}

}  // namespace

void* operator new(std::size_t size) {
    return Checked(Allocate(size));
}
void* operator new[](std::size_t size) {
    return Checked(Allocate(size));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return Checked(Allocate(size, alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return Checked(Allocate(size, alignment));
}

void operator delete(void* block) noexcept {
    Release(block);
}
void operator delete[](void* block) noexcept {
    Release(block);
}
void operator delete(void* block, std::size_t) noexcept {
    Release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    Release(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    Release(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
    Release(block);
}
void operator delete(void* block, std::align_val_t) noexcept {
    Release(block);
}
void operator delete[](void* block, std::align_val_t) noexcept {
    Release(block);
}
void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
    Release(block);
}
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept {
    Release(block);
}
