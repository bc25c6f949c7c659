#pragma once

#include <array>
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
