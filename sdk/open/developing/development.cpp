#include "sdk/open/developing/development.h"

#include "sdk/open/developing/light_range.h"
#include "sdk/open/developing/srgb.h"
#include "sdk/open/failure.h"

#include <algorithm>
#include <cstddef>

namespace sdk_open {
namespace {

// What LibRaw calls the four places of the pattern: it tells the greens of red and blue rows apart.
enum filter_colour_t : unsigned { red, green_of_red_rows, blue, green_of_blue_rows, filter_colours };

bool is_green(unsigned colour) noexcept {
    return colour == green_of_red_rows || colour == green_of_blue_rows;
}

using pattern_t = std::array<unsigned, tone_tables::positions>;
using balance_t = std::array<double, filter_colours>;

bool is_bayer(const pattern_t& pattern) noexcept {
    const auto [first, second, third, fourth] = pattern;
    const bool is_green_first = is_green(first) && is_green(fourth) && second + third == red + blue;
    const bool is_green_second = is_green(second) && is_green(third) && first + fourth == red + blue;
    return is_green_first || is_green_second;
}

pattern_t find_pattern(const libraw_data_t& data, const mosaic_area& lit) {
    const unsigned filters = find_lit_filters(data, lit);
    return {filter_at(filters, 0, 0), filter_at(filters, 1, 0), filter_at(filters, 0, 1),
            filter_at(filters, 1, 1)};
}

// The factors of the colours, the least of them 1. Without the camera's own those for daylight.
balance_t find_balance(const libraw_colordata_t& color) {
    balance_t balance;
    std::ranges::copy(is_balance_recorded(color) ? color.cam_mul : color.pre_mul, balance.begin());
    if (balance[green_of_red_rows] <= 0)
        balance[green_of_red_rows] = 1;
    if (balance[green_of_blue_rows] <= 0)
        balance[green_of_blue_rows] = balance[green_of_red_rows];
    const double least = *std::ranges::min_element(balance);
    if (!(least > 0))
        throw_damaged("the white balance is damaged");
    std::ranges::transform(balance, balance.begin(), [=](double factor) { return factor / least; });
    return balance;
}

tone_tables make_tones(const libraw_colordata_t& color, const pattern_t& pattern) {
    const balance_t balance = find_balance(color);
    const double range = light_range(color);
    std::array<cfa_position_levels, tone_tables::positions> levels;
    std::ranges::transform(pattern, levels.begin(), [&](unsigned colour) {
        const double black = static_cast<double>(color.black) + color.cblack[colour];
        return cfa_position_levels{black, balance[colour] / range};
    });
    return {levels, static_cast<std::uint16_t>(color.maximum)};
}

} // namespace

bool development::is_for(const libraw_data_t& data) {
    return data.idata.colors == 3 && is_bayer(find_pattern(data, find_lit_area(data)));
}

development::development(const raw_decoder& decoder)
    : lit(find_lit_area(decoder.inq_data())), curve(make_srgb_curve()) {
    decoder.require_colours();
    if (!is_for(decoder.inq_data()))
        throw failure(error_code_t::not_supported, "the sensor's filters are not red, green and blue");
    const pattern_t pattern = find_pattern(decoder.inq_data(), lit);
    phase = {is_green(pattern[0]), pattern[0] == red || pattern[1] == red};
    for (std::size_t out = 0; out < srgb_from_camera.size(); ++out)
        std::copy_n(decoder.inq_data().color.rgb_cam[out], 3, srgb_from_camera[out].begin());
}

void development::learn_mosaic(const raw_decoder& decoder) {
    mosaic = decoder.inq_mosaic();
    tones.emplace(make_tones(decoder.inq_data().color, find_pattern(decoder.inq_data(), lit)));
}

} // namespace sdk_open
