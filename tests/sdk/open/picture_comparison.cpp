#include "tests/sdk/open/picture_comparison.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace {

using colour = std::array<double, 3>;

double linear(std::uint16_t coded) {
    const double value = coded / 65535.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

colour mean_linear(const tiff_picture& picture, const picture_area& area) {
    colour sum{};
    for (unsigned row = area.top; row < area.top + area.height; ++row)
        for (unsigned column = area.left; column < area.left + area.width; ++column)
            for (std::size_t channel = 0; channel < sum.size(); ++channel)
                sum[channel] += linear(picture.at(column, row)[channel]);
    for (double& value : sum)
        value /= static_cast<double>(area.width) * area.height;
    return sum;
}

colour lab(const colour& rgb) {
    static constexpr std::array<colour, 3> xyz_from_rgb = {colour{0.412453, 0.357580, 0.180423},
                                                           colour{0.212671, 0.715160, 0.072169},
                                                           colour{0.019334, 0.119193, 0.950227}};
    colour f{};
    for (std::size_t i = 0; i < f.size(); ++i) {
        const colour& row = xyz_from_rgb[i];
        const double t = (row[0] * rgb[0] + row[1] * rgb[1] + row[2] * rgb[2]) / (row[0] + row[1] + row[2]);
        f[i] = t > 216.0 / 24389 ? std::cbrt(t) : (24389.0 / 27 * t + 16) / 116;
    }
    return {116 * f[1] - 16, 500 * (f[0] - f[1]), 200 * (f[1] - f[2])};
}

double chroma_weight(double chroma) {
    const double seventh = std::pow(chroma, 7);
    return std::sqrt(seventh / (seventh + std::pow(25.0, 7)));
}

double degrees(double angle) {
    return angle * std::numbers::pi / 180;
}

// CIE 142-2001.
double ciede2000(const colour& one, const colour& two) {
    using std::numbers::pi;
    const double spread =
        1.5 - 0.5 * chroma_weight((std::hypot(one[1], one[2]) + std::hypot(two[1], two[2])) / 2);
    const double a1 = one[1] * spread;
    const double a2 = two[1] * spread;
    const double c1 = std::hypot(a1, one[2]);
    const double c2 = std::hypot(a2, two[2]);
    const double h1 = std::atan2(one[2], a1);
    const double h2 = std::atan2(two[2], a2);
    const bool has_hue = c1 * c2 != 0;
    const double turn = has_hue ? std::remainder(h2 - h1, 2 * pi) : 0;
    const double hue = has_hue ? h1 + turn / 2 : h1 + h2;
    const double lightness = (one[0] + two[0]) / 2;
    const double chroma = (c1 + c2) / 2;
    const double t = 1 - 0.17 * std::cos(hue - degrees(30)) + 0.24 * std::cos(2 * hue) +
                     0.32 * std::cos(3 * hue + degrees(6)) - 0.20 * std::cos(4 * hue - degrees(63));
    const double from_mid_grey = (lightness - 50) * (lightness - 50);
    const double dl = (two[0] - one[0]) / (1 + 0.015 * from_mid_grey / std::sqrt(20 + from_mid_grey));
    const double dc = (c2 - c1) / (1 + 0.045 * chroma);
    const double dh = 2 * std::sqrt(c1 * c2) * std::sin(turn / 2) / (1 + 0.015 * chroma * t);
    const double hue_degrees = std::fmod(hue * 180 / pi + 720, 360);
    const double in_blue = (hue_degrees - 275) / 25;
    const double rotation = -2 * chroma_weight(chroma) * std::sin(degrees(60 * std::exp(-in_blue * in_blue)));
    return std::sqrt(dl * dl + dc * dc + dh * dh + rotation * dc * dh);
}

} // namespace

picture_figures compare(const tiff_picture& truth, const tiff_picture& picture) {
    constexpr unsigned border = 8;
    constexpr std::uint16_t too_bright = 62000; // near clipping: tells nothing of the gain
    double squares = 0;
    double both = 0;
    double own = 0;
    for (unsigned row = border; row < truth.height - border; ++row)
        for (unsigned column = border; column < truth.width - border; ++column) {
            const auto& wanted = truth.at(column, row);
            const auto& found = picture.at(column, row);
            const bool tells_gain = std::max(std::ranges::max(wanted), std::ranges::max(found)) < too_bright;
            for (std::size_t channel = 0; channel < wanted.size(); ++channel) {
                const double error = (wanted[channel] - found[channel]) / 65535.0;
                squares += error * error;
                both += tells_gain ? linear(wanted[channel]) * linear(found[channel]) : 0;
                own += tells_gain ? linear(found[channel]) * linear(found[channel]) : 0;
            }
        }
    const double count = 3.0 * (truth.width - 2 * border) * (truth.height - 2 * border);
    return {-10 * std::log10(squares / count), both / own};
}

double colour_difference(const tiff_picture& truth, const tiff_picture& picture, const picture_area& area) {
    return ciede2000(lab(mean_linear(truth, area)), lab(mean_linear(picture, area)));
}
