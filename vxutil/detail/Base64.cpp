#include "vxutil/detail/Base64.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace vxJson::detail {

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Digits are below 64, so the high bits remain visible in an OR of digits.
constexpr std::uint8_t kNoDigit = 0xff;

constexpr std::array<std::uint8_t, 256> MakeDigits() {
    std::array<std::uint8_t, 256> digits{};
    for (auto& digit : digits) digit = kNoDigit;
    for (std::uint8_t i = 0; i < 64; ++i) digits[static_cast<unsigned char>(kAlphabet[i])] = i;
    return digits;
}
constexpr std::array<std::uint8_t, 256> kDigits = MakeDigits();

std::uint32_t Byte(const char* at) {
    return static_cast<unsigned char>(*at);
}

std::uint32_t Digit(const char* at) {
    return kDigits[static_cast<unsigned char>(*at)];
}

}  // namespace

void EncodeBase64(std::string_view bytes, char* out) noexcept {
    const char* at = bytes.data();
    const char* const end = at + bytes.size();
    for (; end - at >= 3; at += 3, out += 4) {
        const std::uint32_t group = Byte(at) << 16 | Byte(at + 1) << 8 | Byte(at + 2);
        out[0] = kAlphabet[group >> 18];
        out[1] = kAlphabet[group >> 12 & 63];
        out[2] = kAlphabet[group >> 6 & 63];
        out[3] = kAlphabet[group & 63];
    }
    if (at == end) return;
    const bool two = end - at == 2;
    const std::uint32_t group = Byte(at) << 16 | (two ? Byte(at + 1) << 8 : 0);
    out[0] = kAlphabet[group >> 18];
    out[1] = kAlphabet[group >> 12 & 63];
    out[2] = two ? kAlphabet[group >> 6 & 63] : '=';
    out[3] = '=';
}

bool DecodeBase64(std::string_view text, std::string& bytes) {
    if (text.size() % 4 != 0) return false;
    std::size_t padding = 0;
    while (padding < 2 && padding < text.size() && text[text.size() - 1 - padding] == '=')
        ++padding;
    std::string digits(text);
    std::fill_n(digits.end() - static_cast<std::ptrdiff_t>(padding), padding, kAlphabet[0]);
    bytes.resize(text.size() / 4 * 3);
    char* out = bytes.data();
    std::uint32_t seen = 0;
    std::uint32_t group = 0;
    for (const char* at = digits.data(); at != digits.data() + digits.size(); at += 4, out += 3) {
        const std::uint32_t a = Digit(at), b = Digit(at + 1), c = Digit(at + 2), d = Digit(at + 3);
        seen |= a | b | c | d;
        group = a << 18 | b << 12 | c << 6 | d;
        out[0] = static_cast<char>(group >> 16);
        out[1] = static_cast<char>(group >> 8);
        out[2] = static_cast<char>(group);
    }
    bytes.resize(bytes.size() - padding);
    const std::uint32_t strayBits = (1u << (8 * padding)) - 1;
    return seen < 64 && (group & strayBits) == 0;
}

}  // namespace vxJson::detail
