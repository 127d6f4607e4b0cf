#pragma once

#include <cmath>

namespace dataengine {

/// Rounds `value` to what printing it with two decimals and reading that text with rapidjson's
/// default number parse gives. Returns false where only the text itself can tell: at ties and next
/// to them, from 2^51 hundredths up, and for NaN and the infinities.
///
/// The product is off by at most half a unit in its last place, |product| * 2^-53. So the integer
/// nearest to it is the right one if the distance between them leaves that margin to a half; the
/// condition asks for twice the margin, since its own sum is rounded too. Below 2^51, adding and
/// subtracting 1.5 * 2^52 rounds to the nearest integer. The parser gathers the digits as an
/// integer below 2^53, converts it and divides, as is done here.
inline bool RoundToTwoDecimals(double value, double& rounded) {
    constexpr double kNearestInteger = 6755399441055744.0;      // 1.5 * 2^52
    constexpr double kMargin = 1.0 / (std::uint64_t{1} << 52);  // 2^-52

    const double product = value * 100.0;
    const double cents = (product + kNearestInteger) - kNearestInteger;
    rounded = std::copysign(cents / 100.0, value);
    return std::fabs(product - cents) + std::fabs(product) * kMargin < 0.5;
}

}  // namespace dataengine
