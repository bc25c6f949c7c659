#include "sdk/open/developing/srgb.h"

#include <cmath>

namespace sdk_open {

std::vector<std::uint16_t> make_srgb_curve() {
    constexpr unsigned most = 65535;
    std::vector<std::uint16_t> curve;
    curve.reserve(most + 1);
    for (unsigned value = 0; value <= most; ++value) {
        const double linear = static_cast<double>(value) / most;
        const double coded = linear <= 0.0031308 ? 12.92 * linear : 1.055 * std::pow(linear, 1 / 2.4) - 0.055;
        curve.push_back(static_cast<std::uint16_t>(std::lround(coded * most)));
    }
    return curve;
}

} // namespace sdk_open
