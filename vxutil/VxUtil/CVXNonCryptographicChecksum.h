#pragma once

#include <string>

#include <VxUtil/VxUtilExport.h>

/// Checksums that tell contents apart. Not cryptographically secure.
///
/// Thread safety: may be called concurrently.
class VXUTIL_EXPORT CVXNonCryptographicChecksum {
  public:
    /// Computes the 128-bit XXH3 checksum, seed 0, of `length` bytes.
    ///
    /// `length` is taken as unsigned 32-bit: the low 32 bits of a string's size never lead past the
    /// string. With length 0 the bytes are not read, and `bytes` may be null.
    ///
    /// Returns the canonical (big-endian) form as 32 lower-case hexadecimal digits.
    /// Complexity: linear in `length`.
    static std::string GetChecksum(const unsigned char* bytes, int length);
};
