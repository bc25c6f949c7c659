#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

// The pixels of an RGB picture with 16 bits for each channel.
struct tiff_picture {
    using pixel = std::array<std::uint16_t, 3>;

    unsigned width = 0;
    unsigned height = 0;
    std::vector<pixel> pixels;

    [[nodiscard]] const pixel& at(unsigned column, unsigned row) const {
        return pixels[std::size_t{row} * width + column];
    }
};

// Throws std::runtime_error.
[[nodiscard]] tiff_picture read_tiff(const std::filesystem::path& file);

// How the coded values of a picture compare with the truth of the same size, 8 pixels from the border off.
struct picture_figures {
    double psnr; // dB
    double gain; // the mean over the truth's
};
[[nodiscard]] picture_figures compare(const tiff_picture& truth, const tiff_picture& picture);

// A rectangle of a picture, in pixels.
struct picture_area {
    unsigned left;
    unsigned top;
    unsigned width;
    unsigned height;
};

// How far the mean colours of an area are apart, where 1 is from black to a primary colour.
[[nodiscard]] double colour_difference(const tiff_picture& truth, const tiff_picture& picture,
                                       const picture_area& area);
