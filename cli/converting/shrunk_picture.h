#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

// A picture of at most 240 pixels on a side, each the mean of those of the full picture that it covers.
class shrunk_picture final {
public:
    static constexpr std::size_t channels = 3;

    // For a full picture of this size, neither of them 0.
    shrunk_picture(std::uint32_t width, std::uint32_t height);

    // Takes a whole row of the full picture: red, green and blue of each pixel, of 16 bits.
    void add_row(std::uint32_t row, std::span<const std::uint16_t> values);

    // Empty where the JPEG library cannot make it.
    [[nodiscard]] std::vector<unsigned char> make_jpeg() const;

private:
    [[nodiscard]] std::vector<unsigned char> make_pixels() const;

    std::uint32_t m_full_height;
    std::vector<std::uint32_t> m_columns; // of the shrunk picture, for each of the full one
    std::uint32_t m_width;
    std::uint32_t m_height;
    std::vector<std::uint64_t> m_sums;   // of the values, for each pixel and channel
    std::vector<std::uint64_t> m_counts; // of the full picture's pixels, for each pixel
};
