#pragma once

#include <VxUtil/CVXNonCryptographicChecksum.h>

#include <string>

namespace dataengine::detail {

/// Returns the checksum under which the store files `bytes`. Passes the low 32 bits of the size as
/// the length, whatever the size.
inline std::string RecordChecksum(const std::string& bytes) {
    return CVXNonCryptographicChecksum::GetChecksum(
        reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(bytes.size()));
}

}  // namespace dataengine::detail
