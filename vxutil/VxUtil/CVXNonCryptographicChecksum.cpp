#include <VxUtil/CVXNonCryptographicChecksum.h>

#include <xxhash.h>

#include <cstdint>

#include "vxutil/detail/Hex.h"

std::string CVXNonCryptographicChecksum::GetChecksum(const unsigned char* bytes, int length) {
    XXH128_canonical_t canonical;
    XXH128_canonicalFromHash(&canonical, XXH3_128bits(bytes, static_cast<std::uint32_t>(length)));
    std::string text;
    text.reserve(2 * sizeof canonical.digest);
    for (const unsigned char byte : canonical.digest) vxutil::AppendHex(text, byte);
    return text;
}
