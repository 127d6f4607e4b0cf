#pragma once

#include <string>

#include <VxUtil/VxUtilExport.h>

/// Checksums that identify contents. Not cryptographically secure.
///
/// Thread safety: may be called concurrently.
class VXUTIL_EXPORT CVXNonCryptographicChecksum {
  public:
    /// Computes the 128-bit XXH3 checksum, seed 0, of `length` bytes.
    ///
    /// `length` is interpreted as unsigned 32-bit, so that the low 32 bits of a string's size never
    /// exceed it. With length 0 the bytes are not read, and `bytes` may be null.
    ///
    /// Returns the canonical (big-endian) form as 32 lower-case hexadecimal digits.
    /// Complexity: linear in `length`.
    static std::string GetChecksum(const unsigned char* bytes, int length);
};
