#include "Base64.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace vxJson::detail {

namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr std::uint8_t noDigit = 64;

constexpr std::array<std::uint8_t, 256> MakeDigits() {
    std::array<std::uint8_t, 256> digits{};
    for (auto& digit : digits) digit = noDigit;
    for (std::size_t i = 0; i < alphabet.size(); ++i) {
        digits[static_cast<unsigned char>(alphabet[i])] = static_cast<std::uint8_t>(i);
    }
    return digits;
}
constexpr std::array<std::uint8_t, 256> digits = MakeDigits();

}  // namespace

std::string EncodeBase64(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t count = bytes.size() - i < 3 ? bytes.size() - i : 3;
        std::uint32_t group = 0;
        for (std::size_t j = 0; j < 3; ++j) {
            group = group << 8 | (j < count ? static_cast<unsigned char>(bytes[i + j]) : 0u);
        }
        for (std::size_t j = 0; j < 4; ++j) {
            text.push_back(j <= count ? alphabet[group >> (18 - 6 * j) & 63] : '=');
        }
    }
    return text;
}

bool DecodeBase64(std::string_view text, std::string& bytes) {
    if (text.size() % 4 != 0) return false;
    std::size_t padding = 0;
    while (padding < 2 && padding < text.size() && text[text.size() - 1 - padding] == '=') {
        ++padding;
    }
    text.remove_suffix(padding);
    bytes.clear();
    bytes.reserve(text.size() / 4 * 3 + 2);
    std::uint32_t bits = 0;
    unsigned count = 0;
    for (const char c : text) {
        const std::uint8_t digit = digits[static_cast<unsigned char>(c)];
        if (digit == noDigit) return false;
        bits = bits << 6 | digit;
        count += 6;
        if (count < 8) continue;
        count -= 8;
        bytes.push_back(static_cast<char>(bits >> count & 255));
        bits &= (1u << count) - 1;
    }
    return bits == 0;
}

}  // namespace vxJson::detail
