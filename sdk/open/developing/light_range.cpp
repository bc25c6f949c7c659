#include "sdk/open/developing/light_range.h"

#include "sdk/open/failure.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <span>

namespace sdk_open {

unsigned light_range(const libraw_colordata_t& color) {
    const auto black = std::uint64_t{color.black} + std::ranges::min(std::span(color.cblack).first<4>());
    if (black >= color.maximum || color.maximum > std::numeric_limits<std::uint16_t>::max())
        throw_damaged("the black or the white level is damaged");
    return color.maximum - static_cast<unsigned>(black);
}

bool is_balance_recorded(const libraw_colordata_t& color) noexcept {
    const auto& [red, green, blue, second_green] = color.cam_mul;
    return red > 0 && blue > 0;
}

} // namespace sdk_open
