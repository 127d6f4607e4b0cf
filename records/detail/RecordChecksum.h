#pragma once

#include <VxUtil/CVXNonCryptographicChecksum.h>

#include <string>

/// The checksum under which the store files `bytes`. The length goes out as the low 32 bits of the
/// size, whatever the size is.
inline std::string RecordChecksum(const std::string& bytes) {
    return CVXNonCryptographicChecksum::GetChecksum(
        reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(bytes.size()));
}
