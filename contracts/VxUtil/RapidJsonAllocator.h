#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>

namespace vxJson::detail {

/// An allocator for rapidjson's stacks that reports exhaustion. Theirs returns a null pointer,
/// which they then write through.
class RapidJsonAllocator {
  public:
    static const bool kNeedFree = true;

    void* Malloc(std::size_t size) { return Realloc(nullptr, 0, size); }

    void* Realloc(void* block, std::size_t /*oldSize*/, std::size_t newSize) {
        if (newSize == 0) {
            std::free(block);
            return nullptr;
        }
        void* const moved = std::realloc(block, newSize);
        if (moved == nullptr) throw std::bad_alloc();
        return moved;
    }

    static void Free(void* block) noexcept { std::free(block); }
};

}  // namespace vxJson::detail
