#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

// A code table as a lossless JPEG holds it: how many codes of 1 to 16 bits, and what they stand for.
struct code_table {
    std::array<std::uint8_t, 16> counts;
    std::vector<std::uint8_t> symbols;
};

struct jpeg_plan {
    unsigned precision;
    unsigned width; // in columns of one sample for each component
    unsigned height;
    unsigned components;
    unsigned predictor;
    unsigned restart_interval;      // in columns; 0 for none
    std::vector<code_table> tables; // component n has table n, or the last one
};

// The whole stream. The samples may be larger than the precision allows.
[[nodiscard]] std::string write_lossless_jpeg(const jpeg_plan& plan, std::span<const std::uint16_t> samples);
