#include "sdk/open/colour_smoothing.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace sdk_open {
namespace {

constexpr std::size_t green = 1;

int median(int a, int b, int c) noexcept {
    return std::max(std::min(a, b), std::min(std::max(a, b), c));
}

// Smooths one colour row by row. The median of nine comes from three columns, each sorted once: it is the
// median of the largest of their smallest, the median of their middle and the smallest of their largest
// values.
class colour_smoother final {
public:
    colour_smoother(camera_pixel* pixels, unsigned width, std::size_t colour)
        : m_pixels(pixels), m_width(width), m_colour(colour), m_least(width), m_middle(width), m_most(width) {
        for (auto& row : m_differences)
            row.resize(width);
    }

    void smooth(unsigned height) {
        fetch_differences(0);
        fetch_differences(1);
        for (unsigned row = 1; row + 1 < height; ++row) {
            fetch_differences(row + 1);
            sort_columns();
            store_medians(row);
        }
    }

private:
    [[nodiscard]] camera_pixel* row_at(unsigned row) const noexcept {
        return m_pixels + std::size_t{row} * m_width;
    }

    // Of the row as it was before smoothing: the row above it is overwritten by the time it is needed.
    void fetch_differences(unsigned row) {
        const camera_pixel* pixels = row_at(row);
        int* differences = m_differences[row % m_differences.size()].data();
        for (std::size_t at = 0; at < m_width; ++at)
            differences[at] = pixels[at][m_colour] - pixels[at][green];
    }

    void sort_columns() {
        const int* a = m_differences[0].data();
        const int* b = m_differences[1].data();
        const int* c = m_differences[2].data();
        for (std::size_t at = 0; at < m_width; ++at) {
            m_least[at] = std::min({a[at], b[at], c[at]});
            m_middle[at] = median(a[at], b[at], c[at]);
            m_most[at] = std::max({a[at], b[at], c[at]});
        }
    }

    void store_medians(unsigned row) {
        camera_pixel* pixels = row_at(row);
        for (std::size_t at = 1; at + 1 < m_width; ++at) {
            const int least = std::max({m_least[at - 1], m_least[at], m_least[at + 1]});
            const int middle = median(m_middle[at - 1], m_middle[at], m_middle[at + 1]);
            const int most = std::min({m_most[at - 1], m_most[at], m_most[at + 1]});
            const int value = pixels[at][green] + median(least, middle, most);
            pixels[at][m_colour] = static_cast<std::uint16_t>(std::clamp(value, 0, 65535));
        }
    }

    camera_pixel* m_pixels;
    std::size_t m_width;
    std::size_t m_colour;
    std::array<std::vector<int>, 3> m_differences;
    std::vector<int> m_least;
    std::vector<int> m_middle;
    std::vector<int> m_most;
};

} // namespace

void smooth_colours(camera_pixel* pixels, unsigned width, unsigned height) {
    if (height < 3)
        return;
    constexpr std::size_t red = 0;
    constexpr std::size_t blue = 2;
    for (const std::size_t colour : {red, blue})
        colour_smoother(pixels, width, colour).smooth(height);
}

} // namespace sdk_open
