#include "cli/converting/thumbnail.h"

#include "cli/converting/base64.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>
#include <tiffio.h>
#include <turbojpeg.h>
#include <vector>

namespace {

constexpr std::uint32_t most_pixels_on_a_side = 240;
constexpr std::size_t most_text = 32 << 10;
constexpr std::size_t channels = 3;

struct tiff_closer {
    void operator()(TIFF* file) const noexcept { TIFFClose(file); }
};
struct compressor_closer {
    void operator()(void* compressor) const noexcept { tjDestroy(compressor); }
};
struct jpeg_freer {
    void operator()(unsigned char* bytes) const noexcept { tjFree(bytes); }
};

// Each of its pixels is the mean of those that it covers.
class shrunk_picture final {
public:
    shrunk_picture(std::uint32_t width, std::uint32_t height)
        : m_full_height(height),
          m_columns(width),
          m_width(shrunk(width, std::max(width, height))),
          m_height(shrunk(height, std::max(width, height))),
          m_sums(std::size_t{m_width} * m_height * channels),
          m_counts(std::size_t{m_width} * m_height) {
        for (std::uint32_t column = 0; column < width; ++column)
            m_columns[column] = static_cast<std::uint32_t>(std::uint64_t{column} * m_width / width);
    }

    // The values of a whole row: red, green and blue of each pixel.
    void add_row(std::uint32_t row, std::span<const std::uint16_t> values) {
        const std::size_t first = std::uint64_t{row} * m_height / m_full_height * m_width;
        for (const std::uint32_t column : m_columns) {
            const std::size_t pixel = first + column;
            ++m_counts[pixel];
            for (std::size_t channel = 0; channel < channels; ++channel)
                m_sums[pixel * channels + channel] += values[channel];
            values = values.subspan(channels);
        }
    }

    // Empty where libjpeg has no memory.
    [[nodiscard]] std::string make_jpeg() const {
        constexpr int quality = 75;
        const std::vector<unsigned char> pixels = make_pixels();
        const std::unique_ptr<void, compressor_closer> compressor(tjInitCompress());
        unsigned char* bytes = nullptr;
        unsigned long size = 0;
        const int answer = compressor ? tjCompress2(compressor.get(), pixels.data(),
                                                    static_cast<int>(m_width), 0, static_cast<int>(m_height),
                                                    TJPF_RGB, &bytes, &size, TJSAMP_420, quality, 0)
                                      : -1;
        const std::unique_ptr<unsigned char, jpeg_freer> owner(bytes);
        return answer == 0 ? base64_of({bytes, size}) : std::string();
    }

private:
    static std::uint32_t shrunk(std::uint32_t side, std::uint32_t longer_side) noexcept {
        const std::uint64_t pixels = std::uint64_t{side} * std::min(longer_side, most_pixels_on_a_side);
        return std::max(static_cast<std::uint32_t>(pixels / longer_side), 1U);
    }

    [[nodiscard]] std::vector<unsigned char> make_pixels() const {
        constexpr std::uint64_t step = 257; // of 8 bits, in 16
        std::vector<unsigned char> pixels;
        for (std::size_t i = 0; i < m_sums.size(); ++i)
            pixels.push_back(static_cast<unsigned char>(
                m_sums[i] / (std::max<std::uint64_t>(m_counts[i / channels], 1) * step)));
        return pixels;
    }

    std::uint32_t m_full_height;
    std::vector<std::uint32_t> m_columns; // of the shrunk picture, for each of the full one
    std::uint32_t m_width;
    std::uint32_t m_height;
    std::vector<std::uint64_t> m_sums;
    std::vector<std::uint64_t> m_counts;
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
        TIFFGetField(file.get(), TIFFTAG_IMAGELENGTH, &height) != 1 ||
        TIFFScanlineSize64(file.get()) != std::uint64_t{width} * channels * sizeof(std::uint16_t))
        return {};
    shrunk_picture shrunk(width, height);
    if (!add_rows(file.get(), width, height, shrunk))
        return {};
    const std::string jpeg = shrunk.make_jpeg();
    return jpeg.size() <= most_text ? jpeg : std::string();
}
