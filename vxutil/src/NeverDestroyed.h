#pragma once

#include <new>

namespace vxJson::detail {

/// Returns the shared default value of a type. Created at its first use and never destroyed, so
/// that static objects may use it before main and after its end. Allocates nothing that T() does
/// not allocate.
template <typename T>
const T& NeverDestroyed() noexcept {
    alignas(T) static unsigned char storage[sizeof(T)];
    static const T& object = *::new (static_cast<void*>(storage)) T();
    return object;
}

}  // namespace vxJson::detail
