#include "sdk/open/writing/pixel_layout.h"

#include "sdk/open/developing/finished_picture.h"

#include <algorithm>

namespace sdk_open {
namespace {

constexpr unsigned channels = finished_picture::channels;

template <typename Value>
bool set(TIFF* file, std::uint32_t tag, Value value) {
    return TIFFSetField(file, tag, value) == 1;
}

} // namespace

std::size_t pixel_layout::inq_strip_length() const noexcept {
    return std::size_t{width} * channels * rows_per_strip;
}

pixel_layout lay_out(unsigned width, unsigned height, compression_t compression) noexcept {
    constexpr unsigned strip_size = 256 << 10; // bytes, about
    const unsigned row_size = width * channels * 2;
    return {width, height, std::clamp(strip_size / row_size, 1U, height), compression};
}

std::uint16_t tiff_scheme(compression_t compression) noexcept {
    switch (compression) {
    case compression_t::none:
        return COMPRESSION_NONE;
    case compression_t::deflate:
        return COMPRESSION_ADOBE_DEFLATE;
    case compression_t::lzw:
        return COMPRESSION_LZW;
    case compression_t::zstd:
        return COMPRESSION_ZSTD;
    }
    return COMPRESSION_NONE;
}

bool set_pixel_layout(TIFF* file, const pixel_layout& layout) {
    const bool is_compressed = layout.compression != compression_t::none;
    return set(file, TIFFTAG_IMAGEWIDTH, layout.width) && set(file, TIFFTAG_IMAGELENGTH, layout.height) &&
           set(file, TIFFTAG_BITSPERSAMPLE, 16) &&
           set(file, TIFFTAG_SAMPLESPERPIXEL, static_cast<int>(channels)) &&
           set(file, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB) &&
           set(file, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) &&
           set(file, TIFFTAG_ROWSPERSTRIP, layout.rows_per_strip) &&
           set(file, TIFFTAG_COMPRESSION, static_cast<int>(tiff_scheme(layout.compression))) &&
           (!is_compressed || set(file, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL));
}

} // namespace sdk_open
