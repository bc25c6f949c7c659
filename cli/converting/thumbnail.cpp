#include "cli/converting/thumbnail.h"

#include "cli/converting/base64.h"
#include "cli/converting/shrunk_picture.h"

#include <cstdint>
#include <memory>
#include <tiffio.h>
#include <vector>

namespace {

constexpr std::size_t most_text = 32 << 10;
constexpr std::size_t channels = shrunk_picture::channels;

struct tiff_closer {
    void operator()(TIFF* file) const noexcept { TIFFClose(file); }
};

// False where it cannot be read.
bool add_rows(TIFF* file, std::uint32_t width, std::uint32_t height, shrunk_picture& shrunk) {
    std::vector<std::uint16_t> values(std::size_t{width} * channels);
    for (std::uint32_t row = 0; row < height; ++row) {
        if (TIFFReadScanline(file, values.data(), row) != 1)
            return false;
        shrunk.add_row(row, values);
    }
    return true;
}

} // namespace

std::string make_thumbnail(const std::string& tiff) {
    TIFFSetWarningHandler(nullptr);
    TIFFSetErrorHandler(nullptr);
    const std::unique_ptr<TIFF, tiff_closer> file(TIFFOpen(tiff.c_str(), "r"));
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    if (!file || TIFFGetField(file.get(), TIFFTAG_IMAGEWIDTH, &width) != 1 ||
        TIFFGetField(file.get(), TIFFTAG_IMAGELENGTH, &height) != 1 || width == 0 || height == 0 ||
        TIFFScanlineSize64(file.get()) != std::uint64_t{width} * channels * sizeof(std::uint16_t))
        return {};
    shrunk_picture shrunk(width, height);
    if (!add_rows(file.get(), width, height, shrunk))
        return {};
    std::string text = base64_of(shrunk.make_jpeg());
    return text.size() <= most_text ? text : std::string();
}
