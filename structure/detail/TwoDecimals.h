#pragma once

#include <cmath>
#include <cstdint>

namespace dataengine::detail {

/// Does what RoundToTwoDecimals does, in integers and without its condition. Returns NaN if only
/// the text decides.
double RoundExactly(double value);

/// Rounds `value` as printing it with two decimals and parsing that text with rapidjson's default
/// flags would. Returns false if only the text decides: from 2^53 hundredths up, and for NaN and
/// the infinities.
///
/// The product is off by at most half a unit in its last place, |product| * 2^-53. So the integer
/// nearest to it is correct if their distance is below one half by more than that error; the
/// condition requires twice the error, since its own sum is rounded too. Below 2^51, adding and
/// subtracting 1.5 * 2^52 rounds to the nearest integer. The parser accumulates the digits in an
/// integer, which is exact below 2^53, converts it and divides, as is done here. None of the
/// expressions may be contracted to a fused multiply-add.
inline bool RoundToTwoDecimals(double value, double& rounded) {
    constexpr double kNearestInteger = 6755399441055744.0;      // 1.5 * 2^52
    constexpr double kMargin = 1.0 / (std::uint64_t{1} << 52);  // 2^-52

    const double product = value * 100.0;
    const double cents = (product + kNearestInteger) - kNearestInteger;
    rounded = std::copysign(cents / 100.0, value);
    if (std::fabs(product - cents) + std::fabs(product) * kMargin < 0.5) return true;
    rounded = RoundExactly(value);
    return !std::isnan(rounded);
}

}  // namespace dataengine::detail
