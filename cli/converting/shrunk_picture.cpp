#include "cli/converting/shrunk_picture.h"

#include <algorithm>
#include <memory>
#include <turbojpeg.h>

namespace {

constexpr std::uint32_t most_pixels_on_a_side = 240;

struct compressor_closer {
    void operator()(void* compressor) const noexcept { tjDestroy(compressor); }
};
struct jpeg_freer {
    void operator()(unsigned char* bytes) const noexcept { tjFree(bytes); }
};

std::uint32_t shrink(std::uint32_t side, std::uint32_t longer_side) noexcept {
    const std::uint64_t pixels = std::uint64_t{side} * std::min(longer_side, most_pixels_on_a_side);
    return std::max(static_cast<std::uint32_t>(pixels / longer_side), 1U);
}

} // namespace

shrunk_picture::shrunk_picture(std::uint32_t width, std::uint32_t height)
    : m_full_height(height),
      m_columns(width),
      m_width(shrink(width, std::max(width, height))),
      m_height(shrink(height, std::max(width, height))),
      m_sums(std::size_t{m_width} * m_height * channels),
      m_counts(std::size_t{m_width} * m_height) {
    for (std::uint32_t column = 0; column < width; ++column)
        m_columns[column] = static_cast<std::uint32_t>(std::uint64_t{column} * m_width / width);
}

void shrunk_picture::add_row(std::uint32_t row, std::span<const std::uint16_t> values) {
    const std::size_t first = std::uint64_t{row} * m_height / m_full_height * m_width;
    for (const std::uint32_t column : m_columns) {
        const std::size_t pixel = first + column;
        ++m_counts[pixel];
        for (std::size_t channel = 0; channel < channels; ++channel)
            m_sums[pixel * channels + channel] += values[channel];
        values = values.subspan(channels);
    }
}

std::vector<unsigned char> shrunk_picture::make_jpeg() const {
    constexpr int quality = 75;
    const std::vector<unsigned char> pixels = make_pixels();
    const std::unique_ptr<void, compressor_closer> compressor(tjInitCompress());
    if (!compressor)
        return {};
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    const int answer =
        tjCompress2(compressor.get(), pixels.data(), static_cast<int>(m_width), 0, static_cast<int>(m_height),
                    TJPF_RGB, &bytes, &size, TJSAMP_420, quality, 0);
    const std::unique_ptr<unsigned char, jpeg_freer> owner(bytes);
    return answer == 0 ? std::vector(bytes, bytes + size) : std::vector<unsigned char>();
}

// Every pixel has a count: the shrunk picture is no larger than the full one.
std::vector<unsigned char> shrunk_picture::make_pixels() const {
    constexpr std::uint64_t step = 257; // of 8 bits, in 16
    std::vector<unsigned char> pixels;
    for (std::size_t i = 0; i < m_sums.size(); ++i)
        pixels.push_back(static_cast<unsigned char>(m_sums[i] / (m_counts[i / channels] * step)));
    return pixels;
}
