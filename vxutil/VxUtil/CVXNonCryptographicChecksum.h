#pragma once

#include <string>

#include <VxUtil/VxUtilExport.h>

/// A checksum for telling contents apart. It is no protection against intent.
class VXUTIL_EXPORT CVXNonCryptographicChecksum {
  public:
    /// The 128-bit XXH3 of the bytes, seed 0, in its canonical (big-endian) form as 32 lower-case
    /// hexadecimal digits. The length is taken as unsigned 32-bit: the low 32 bits of a string's
    /// size never lead past the string. With length 0 the bytes aren't touched and may be null.
    ///
    /// Thread rule: may be called from any thread at any time.
    static std::string GetChecksum(const unsigned char* bytes, int length);
};
