#pragma once

#include <cstdint>
#include <string>

class CVXNonCryptographicChecksum {
  public:
    /// 64-bit FNV-1a, in decimal.
    static std::string GetChecksum(const unsigned char* bytes, int length) {
        std::uint64_t hash = 14695981039346656037U;
        for (int i = 0; i < length; ++i) hash = (hash ^ bytes[i]) * 1099511628211U;
        return std::to_string(hash);
    }
};
