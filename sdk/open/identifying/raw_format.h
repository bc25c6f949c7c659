#pragma once

#include <cstddef>
#include <span>

namespace sdk_open {

// How many bytes from the file's start tell its format.
inline constexpr std::size_t raw_signature_size = 16;

enum class raw_format_t {
    cr2, // a TIFF container, the mosaic as lossless JPEG
    crw, // a heap of records, the mosaic in a coding of its own
};

// Tells by the first bytes, whatever the file is called. Throws failure(not_a_raw_picture) for anything else,
// also for other makers' raw files.
[[nodiscard]] raw_format_t recognise_raw_format(std::span<const std::byte> bytes);

} // namespace sdk_open
