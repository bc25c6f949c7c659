#pragma once

#include "sdk/open/writing/pixel_layout.h"
#include "sdk/open/writing/tiff_cursor.h"
#include "sdk/open/writing/tiff_handle.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace sdk_open {

// Compresses the strips of a band in memory. The codecs are libtiff's: this has a file of its own that is
// never read, into which libtiff writes each strip in the place of the one before. What a strip becomes does
// not depend on those before it.
class band_compressor final {
public:
    // Throws std::bad_alloc.
    explicit band_compressor(const pixel_layout& layout);
    band_compressor(const band_compressor&) = delete;
    band_compressor& operator=(const band_compressor&) = delete;

    // Takes whole strips, but for the last one of a picture. Throws std::bad_alloc.
    void compress(std::span<std::uint16_t> values);

    // The strips of the band that was compressed last, one after another.
    [[nodiscard]] std::size_t inq_count() const noexcept { return m_ends.size(); }
    [[nodiscard]] std::span<std::byte> inq_strip(std::size_t index) noexcept;

private:
    [[nodiscard]] tiff_storage inq_storage() noexcept;

    pixel_layout m_layout;
    std::vector<std::byte> m_bytes;
    std::vector<std::size_t> m_ends; // of the strips in them
    tiff_cursor m_cursor;            // in the file, as libtiff sees it
    bool m_lacks_memory = false;
    tiff_handle m_tiff;
};

} // namespace sdk_open
