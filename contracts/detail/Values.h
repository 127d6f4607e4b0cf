#pragma once

#include <VxUtil/vxJson.h>

#include <string>
#include <utility>

namespace dataengine {

// The two kinds of vxJson::Value that are asked for by number.
constexpr auto kNullType = static_cast<vxJson::ValueType>(0);
constexpr auto kBinaryType = static_cast<vxJson::ValueType>(110);

inline vxJson::Value NullValue() {
    return vxJson::Value(kNullType, false);
}

inline vxJson::Value BinaryValue(const std::string& bytes) {
    return vxJson::Value(bytes, kBinaryType);
}

/// A time is passed bit for bit; asTime gives the signed number back.
inline vxJson::Value TimeValue(long long time) {
    return vxJson::Value(static_cast<unsigned long long>(time), false);
}

/// Takes the text and leaves `source` empty, which a string's own move leaves to chance. Assigning
/// the result to `source` itself puts the text back.
inline std::string TakeText(std::string& source) noexcept {
    return std::exchange(source, {});
}

}  // namespace dataengine
