#pragma once

#include "tests/sdk/open/tiff_picture.h"

// How a picture compares with the truth of the same size.
struct picture_figures {
    double psnr; // dB, 8 pixels from the border off, of the coded values
    double gain; // the factor in linear light that takes it to the truth
};
[[nodiscard]] picture_figures compare(const tiff_picture& truth, const tiff_picture& picture);

// A rectangle of a picture, in pixels.
struct picture_area {
    unsigned left;
    unsigned top;
    unsigned width;
    unsigned height;
};

// The CIEDE2000 difference of the mean colours of an area.
[[nodiscard]] double colour_difference(const tiff_picture& truth, const tiff_picture& picture,
                                       const picture_area& area);
