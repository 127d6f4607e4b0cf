#include <cerrno>
#include <cstddef>

#include "tests/memory/FaultCounter.h"

// The allocation functions of the C library, put before its own. operator new and rapidjson's pools
// and stacks all come here, so that every allocation of the library can be the one to fail.

extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void __libc_free(void* block);

}  // extern "C"

namespace {

void* Fail() {
    errno = ENOMEM;
    return nullptr;
}

void* Counted(void* block) {
    if (block != nullptr) ++faultCounter.live;
    return block;
}

}  // namespace

// They must be visible to the libraries under test.
#pragma GCC visibility push(default)
extern "C" {

void* malloc(std::size_t size) {
    return faultCounter.Strikes() ? Fail() : Counted(__libc_malloc(size));
}

void* calloc(std::size_t count, std::size_t size) {
    return faultCounter.Strikes() ? Fail() : Counted(__libc_calloc(count, size));
}

void* realloc(void* block, std::size_t size) {
    if (faultCounter.Strikes()) return Fail();
    void* const moved = __libc_realloc(block, size);
    return block == nullptr ? Counted(moved) : moved;
}

void free(void* block) {
    if (block != nullptr) --faultCounter.live;
    __libc_free(block);
}

}  // extern "C"
#pragma GCC visibility pop
