#pragma once

#include <VxUtil/vxJson.h>

#include <string>
#include <utility>

namespace dataengine::detail {

// The two kinds of vxJson::Value that the library passes by number.
constexpr auto kNullType = static_cast<vxJson::ValueType>(0);
constexpr auto kBinaryType = static_cast<vxJson::ValueType>(110);

inline vxJson::Value NullValue() {
    return vxJson::Value(kNullType, false);
}

inline vxJson::Value BinaryValue(const std::string& bytes) {
    return vxJson::Value(bytes, kBinaryType);
}

/// Passes a time bit for bit; asTime returns the signed number again.
inline vxJson::Value TimeValue(long long time) {
    return vxJson::Value(static_cast<unsigned long long>(time), false);
}

/// Moves the string out and leaves `source` empty, which a string's own move does not guarantee.
/// Assigning the result to `source` restores it.
inline std::string TakeText(std::string& source) noexcept {
    return std::exchange(source, {});
}

}  // namespace dataengine::detail
