#include "tests/sdk/open/tiff_picture.h"

#include <cmath>
#include <memory>
#include <stdexcept>
#include <tiffio.h>

tiff_picture read_tiff(const std::filesystem::path& file) {
    const std::unique_ptr<TIFF, decltype([](TIFF* open) { TIFFClose(open); })> tiff(
        TIFFOpen(file.c_str(), "r"));
    tiff_picture picture;
    if (!tiff || TIFFGetField(tiff.get(), TIFFTAG_IMAGEWIDTH, &picture.width) != 1 ||
        TIFFGetField(tiff.get(), TIFFTAG_IMAGELENGTH, &picture.height) != 1 ||
        TIFFScanlineSize64(tiff.get()) != picture.width * sizeof(tiff_picture::pixel))
        throw std::runtime_error("cannot read " + file.string());
    picture.pixels.resize(std::size_t{picture.width} * picture.height);
    for (unsigned row = 0; row < picture.height; ++row)
        if (TIFFReadScanline(tiff.get(), &picture.pixels[std::size_t{row} * picture.width], row) != 1)
            throw std::runtime_error("cannot read the pixels of " + file.string());
    return picture;
}

picture_figures compare(const tiff_picture& truth, const tiff_picture& picture) {
    constexpr unsigned border = 8;
    double squares = 0;
    double wanted = 0;
    double found = 0;
    for (unsigned row = border; row < truth.height - border; ++row)
        for (unsigned column = border; column < truth.width - border; ++column)
            for (std::size_t channel = 0; channel < 3; ++channel) {
                const double error = truth.at(column, row)[channel] - picture.at(column, row)[channel];
                squares += error * error;
                wanted += truth.at(column, row)[channel];
                found += picture.at(column, row)[channel];
            }
    const double count = 3.0 * (truth.width - 2 * border) * (truth.height - 2 * border);
    return {10 * std::log10(65535.0 * 65535 * count / squares), found / wanted};
}

double colour_difference(const tiff_picture& truth, const tiff_picture& picture, const picture_area& area) {
    std::array<double, 3> sum{};
    for (unsigned row = area.top; row < area.top + area.height; ++row)
        for (unsigned column = area.left; column < area.left + area.width; ++column)
            for (std::size_t channel = 0; channel < sum.size(); ++channel)
                sum[channel] += picture.at(column, row)[channel] - truth.at(column, row)[channel];
    return std::hypot(sum[0], sum[1], sum[2]) / area.width / area.height / 65535;
}
