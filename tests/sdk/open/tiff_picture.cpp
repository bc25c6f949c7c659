#include "tests/sdk/open/tiff_picture.h"

#include <memory>
#include <stdexcept>
#include <tiffio.h>

namespace {

struct tiff_closer {
    void operator()(TIFF* file) const noexcept { TIFFClose(file); }
};

void check(bool succeeded, const std::filesystem::path& file) {
    if (!succeeded)
        throw std::runtime_error("cannot read " + file.string());
}

} // namespace

tiff_picture read_tiff(const std::filesystem::path& file) {
    const std::unique_ptr<TIFF, tiff_closer> tiff(TIFFOpen(file.c_str(), "r"));
    check(tiff != nullptr, file);
    tiff_picture picture;
    std::uint16_t bits = 0;
    check(TIFFGetField(tiff.get(), TIFFTAG_IMAGEWIDTH, &picture.width) == 1 &&
              TIFFGetField(tiff.get(), TIFFTAG_IMAGELENGTH, &picture.height) == 1 &&
              TIFFGetField(tiff.get(), TIFFTAG_BITSPERSAMPLE, &bits) == 1 && bits == 16,
          file);
    picture.pixels.resize(std::size_t{picture.width} * picture.height);
    check(TIFFScanlineSize64(tiff.get()) == picture.width * sizeof(tiff_picture::pixel), file);
    for (unsigned row = 0; row < picture.height; ++row)
        check(TIFFReadScanline(tiff.get(), &picture.pixels[std::size_t{row} * picture.width], row) == 1,
              file);
    return picture;
}
