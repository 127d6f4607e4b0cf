#include "structure/detail/TwoDecimals.h"

#include <cstring>
#include <limits>

namespace dataengine::detail {

// A finite double is significand * 2^-shift. Its product with 100 has at most 60 bits, so the
// hundredths and the exact rest are read off an integer; ties go to even, as in printed text.
double RoundExactly(double value) {
    constexpr int kFractionBits = 52;
    constexpr int kBias = 1023;
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr std::uint64_t kImplicitBit = std::uint64_t{1} << kFractionBits;

    std::uint64_t bits;
    static_assert(sizeof bits == sizeof value);
    std::memcpy(&bits, &value, sizeof bits);
    const int exponent = static_cast<int>(bits >> kFractionBits & 0x7ff);
    const int shift = kBias + kFractionBits - exponent;
    if (shift <= 0) return kNaN;

    std::uint64_t hundredths = 0;
    if (shift <= 60) {  // below that, less than half a hundredth
        const std::uint64_t product = 100 * ((bits & (kImplicitBit - 1)) | kImplicitBit);
        const std::uint64_t half = std::uint64_t{1} << (shift - 1);
        const std::uint64_t rest = product & (2 * half - 1);
        hundredths = product >> shift;
        // Without branches, which would be mispredicted for every second value.
        hundredths += unsigned{rest + (hundredths & 1) > half};
    }
    if (hundredths >= 2 * kImplicitBit) return kNaN;
    return std::copysign(static_cast<double>(hundredths) / 100.0, value);
}

}  // namespace dataengine::detail
