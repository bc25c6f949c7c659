#include "sdk/open/writing/band_compressor.h"

#include <algorithm>
#include <new>

namespace sdk_open {

// Strips are compressed into memory, which is all that can be lacking: that is what each failure means.
band_compressor::band_compressor(const pixel_layout& layout)
    : m_layout(layout), m_tiff(open_tiff(inq_storage(), "wl")) {
    if (!m_tiff || !set_pixel_layout(m_tiff.get(), layout))
        throw std::bad_alloc();
}

void band_compressor::compress(std::span<std::uint16_t> values) {
    m_bytes.clear();
    m_ends.clear();
    while (!values.empty()) {
        const auto strip = values.first(std::min(m_layout.inq_strip_length(), values.size()));
        const auto size = static_cast<tmsize_t>(strip.size_bytes());
        const bool is_written = TIFFWriteEncodedStrip(m_tiff.get(), 0, strip.data(), size) == size;
        if (!is_written || m_lacks_memory)
            throw std::bad_alloc();
        m_ends.push_back(m_bytes.size());
        values = values.subspan(strip.size());
    }
}

std::span<std::byte> band_compressor::inq_strip(std::size_t index) noexcept {
    const std::size_t begin = index == 0 ? 0 : m_ends[index - 1];
    return std::span(m_bytes).subspan(begin, m_ends[index] - begin);
}

// No exception may pass through libtiff.
tiff_storage band_compressor::inq_storage() noexcept {
    const auto refuse_to_read = [](thandle_t, void*, tmsize_t) -> tmsize_t { return -1; };
    const auto write = [](thandle_t client, void* source, tmsize_t count) -> tmsize_t {
        auto& self = *static_cast<band_compressor*>(client);
        const std::span bytes(static_cast<const std::byte*>(source), static_cast<std::size_t>(count));
        try {
            self.m_bytes.insert(self.m_bytes.end(), bytes.begin(), bytes.end());
        } catch (const std::bad_alloc&) {
            self.m_lacks_memory = true;
            return -1;
        }
        self.m_cursor.advance(bytes.size());
        return count;
    };
    const auto seek = [](thandle_t client, toff_t offset, int origin) -> toff_t {
        return static_cast<band_compressor*>(client)->m_cursor.seek(offset, origin);
    };
    const auto size = [](thandle_t client) -> toff_t {
        return static_cast<band_compressor*>(client)->m_cursor.size;
    };
    return {this, refuse_to_read, write, seek, size};
}

} // namespace sdk_open
