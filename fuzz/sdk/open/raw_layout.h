#pragma once

#include <cstddef>
#include <span>
#include <vector>

// What a stretch of a raw file is to its reader.
enum class stretch_kind_t {
    entry,  // a number in a directory: a tag, a type, a count, a size, an offset
    value,  // what a directory's entry stands for
    header, // a segment in front of the codes
    codes,  // the samples
};

struct stretch final {
    stretch_kind_t kind;
    std::size_t first; // byte of the file
    std::size_t size;  // at least 1
};

// The stretches of a raw file, as far as they lie in it; none in bytes that are no such file. However damaged
// it is, there are no more than a few thousand.
[[nodiscard]] std::vector<stretch> find_stretches(std::span<const std::byte> file);

// The same for files that are taken for one of the formats.
[[nodiscard]] std::vector<stretch> find_cr2_stretches(std::span<const std::byte> file);
[[nodiscard]] std::vector<stretch> find_crw_stretches(std::span<const std::byte> file);
