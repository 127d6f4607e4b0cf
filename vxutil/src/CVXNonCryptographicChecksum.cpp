#include <VxUtil/CVXNonCryptographicChecksum.h>

#include <xxhash.h>

#include <cstdint>

std::string CVXNonCryptographicChecksum::GetChecksum(const unsigned char* bytes, int length) {
    static const char digits[] = "0123456789abcdef";
    XXH128_canonical_t canonical;
    XXH128_canonicalFromHash(&canonical, XXH3_128bits(bytes, static_cast<std::uint32_t>(length)));
    std::string text;
    text.reserve(2 * sizeof canonical.digest);
    for (const unsigned char byte : canonical.digest) {
        text.push_back(digits[byte >> 4]);
        text.push_back(digits[byte & 15]);
    }
    return text;
}
