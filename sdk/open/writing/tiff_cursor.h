#pragma once

#include <cstddef>
#include <cstdint>
#include <tiffio.h>

namespace sdk_open {

// Where libtiff stands in a file that it writes, and how large that is, in bytes.
struct tiff_cursor {
    // The origin is one of fseek()'s. Answers the new position.
    toff_t seek(toff_t offset, int origin) noexcept;

    // This many bytes were written at the position.
    void advance(std::size_t count) noexcept;

    std::uint64_t position = 0;
    std::uint64_t size = 0;
};

} // namespace sdk_open
