#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>

namespace dataengine::detail {

/// Allocates rapidjson's working memory: reader stacks, writers and string buffers.
///
/// Throws std::bad_alloc if memory runs out, where rapidjson's own allocator returns a null pointer
/// that its containers then write through.
class RapidJsonAllocator {
  public:
    static const bool kNeedFree = true;

    void* Malloc(std::size_t size) {
        if (size == 0) return nullptr;
        return Checked(std::malloc(size));
    }

    void* Realloc(void* block, std::size_t, std::size_t size) {
        if (size == 0) {
            std::free(block);
            return nullptr;
        }
        return Checked(std::realloc(block, size));
    }

    static void Free(void* block) { std::free(block); }

  private:
    static void* Checked(void* block) {
        if (block == nullptr) throw std::bad_alloc();
        return block;
    }
};

}  // namespace dataengine::detail
