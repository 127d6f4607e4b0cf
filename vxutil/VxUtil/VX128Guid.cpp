#include <VxUtil/VX128Guid.h>

#include <cstddef>
#include <stdexcept>

#include "vxutil/detail/Hex.h"

namespace {

constexpr std::size_t kTextLength = 36;

bool IsHyphenAt(std::size_t position) {
    return position == 8 || position == 13 || position == 18 || position == 23;
}

}  // namespace

VX128Guid::VX128Guid(const std::string& text) {
    const auto fail = [&text] {
        throw std::invalid_argument("VX128Guid: \"" + text.substr(0, 2 * kTextLength) +
                                    "\" is not of the form 8-4-4-4-12 hexadecimal digits");
    };
    if (text.size() != kTextLength) fail();
    std::size_t digits = 0;
    for (std::size_t i = 0; i < kTextLength; ++i) {
        if (IsHyphenAt(i)) {
            if (text[i] != '-') fail();
            continue;
        }
        const int value = vxutil::HexValue(text[i]);
        if (value < 0) fail();
        std::uint8_t& byte = bytes_[digits++ / 2];
        byte = static_cast<std::uint8_t>(byte << 4 | value);
    }
}

std::string VX128Guid::ToUUIDString(bool hyphens) const {
    std::string text;
    text.reserve(kTextLength);
    for (std::size_t i = 0; i < bytes_.size(); ++i) {
        if (hyphens && (i == 4 || i == 6 || i == 8 || i == 10)) text.push_back('-');
        vxutil::AppendHex(text, bytes_[i]);
    }
    return text;
}
