#include "tests/memory/FailingMalloc.h"

#include <malloc.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>

// Replaces the allocation functions of the C library. operator new and rapidjson's pools and stacks
// call them, so every allocation of the library can be made to fail.

thread_local FailingMalloc failingMalloc;

extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void __libc_free(void* block);

}  // extern "C"

namespace {

bool Fails() {
    if (failingMalloc.untilFailure == 0 || --failingMalloc.untilFailure != 0) return false;
    errno = ENOMEM;
    return true;
}

void Count(void* block, int sign) {
    if (block == nullptr) return;
    failingMalloc.live += sign;
    failingMalloc.bytes += sign * static_cast<long>(malloc_usable_size(block));
    failingMalloc.peak = std::max(failingMalloc.peak, failingMalloc.bytes);
}

void* Counted(void* block) {
    Count(block, 1);
    return block;
}

}  // namespace

// The functions must be visible to the libraries under test.
#pragma GCC visibility push(default)
extern "C" {

void* malloc(std::size_t size) {
    return Fails() ? nullptr : Counted(__libc_malloc(size));
}

void* calloc(std::size_t count, std::size_t size) {
    return Fails() ? nullptr : Counted(__libc_calloc(count, size));
}

void* realloc(void* block, std::size_t size) {
    if (Fails()) return nullptr;
    Count(block, -1);
    return Counted(__libc_realloc(block, size));
}

void free(void* block) {
    Count(block, -1);
    __libc_free(block);
}

}  // extern "C"
#pragma GCC visibility pop
