#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>
#include <optional>

namespace dataengine {

/// The double that comes out of printing `value` with two decimals and reading that text with
/// rapidjson's default number parse; nothing where only the text itself can tell.
///
/// A double is m * 2^-shift with m below 2^53, so m * 100 fits in 64 bits, and rounding it at bit
/// `shift`, ties to even, is rounding the exact decimal value as printf does. The parser gathers
/// the digits in an integer as long as that is below 2^53 before each decimal; so up to
/// cents = 10 * (2^53 - 1) + 9 it holds exactly `cents`, and converts and divides as is done here.
/// Beyond, it goes on in floating point. NaN and the infinities give nothing either.
inline std::optional<double> ExactTwoDecimals(double value) {
    constexpr int kMantissaBits = 52;
    constexpr int kExponentBias = 1075;  // of the exponent that belongs to an integer mantissa
    constexpr std::uint64_t kParserLimit = (std::uint64_t{1} << 53) - 1;

    std::uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    const int exponent = static_cast<int>(bits >> kMantissaBits) & 0x7ff;
    const int shift = kExponentBias - exponent;
    if (shift <= 0) return std::nullopt;

    std::uint64_t cents = 0;
    if (shift < 62) {  // from there on m * 100 < 2^60 is less than half; so are all subnormals
        const std::uint64_t hidden = std::uint64_t{1} << kMantissaBits;
        const std::uint64_t scaled = ((bits & (hidden - 1)) | hidden) * 100;
        const std::uint64_t odd = (scaled >> shift) & 1;
        const std::uint64_t half = std::uint64_t{1} << (shift - 1);
        cents = (scaled + (half - 1) + odd) >> shift;  // up from above the half, or at it if odd
        if (cents / 10 > kParserLimit) return std::nullopt;
    }
    return std::copysign(static_cast<double>(static_cast<std::int64_t>(cents)) / 100.0, value);
}

/// The same, quicker for most values: below 2^44 the product with 100 is off by less than 2^-9, so
/// the integer nearest to it is the right one unless it lies about a half away.
inline std::optional<double> TwoDecimals(double value) {
    constexpr double kLimit = 17592186044416.0;             // 2^44
    constexpr double kNearestInteger = 6755399441055744.0;  // 1.5 * 2^52: no fraction survives it

    const double product = value * 100.0;
    const double cents = (product + kNearestInteger) - kNearestInteger;
    if (std::fabs(product) < kLimit && std::fabs(product - cents) < 0.498) {
        return std::copysign(cents / 100.0, value);
    }
    return ExactTwoDecimals(value);
}

}  // namespace dataengine
