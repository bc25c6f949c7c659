#include "sdk/open/decoding/slice_writer.h"

#include "sdk/open/failure.h"

#include <algorithm>
#include <cstddef>

namespace sdk_open {

slice_writer::slice_writer(const mosaic_slices& slices, const mosaic_buffer& mosaic)
    : m_slices(slices), m_mosaic(mosaic) {
    if (m_slices.count == 0)
        m_slices = {0, mosaic.width, mosaic.width};
    const std::uint64_t width = std::uint64_t{m_slices.count} * m_slices.width + m_slices.last_width;
    if (m_slices.width == 0 || m_slices.last_width == 0 || width != mosaic.width)
        throw_damaged("the pixel data are cut into impossible slices");
    m_width = m_slices.count == 0 ? m_slices.last_width : m_slices.width;
}

void slice_writer::write(std::span<const std::uint16_t> samples) noexcept {
    while (!samples.empty()) {
        const std::size_t run = std::min<std::size_t>(samples.size(), m_width - m_column);
        const std::size_t position = std::size_t{m_row} * m_mosaic.width + m_left + m_column;
        std::copy_n(samples.data(), run, m_mosaic.samples.subspan(position, run).data());
        samples = samples.subspan(run);
        m_column += static_cast<unsigned>(run);
        if (m_column < m_width)
            continue;
        m_column = 0;
        if (++m_row < m_mosaic.height || m_left + m_width == m_mosaic.width)
            continue;
        m_row = 0;
        m_left += m_width;
        m_width = m_mosaic.width - m_left > m_slices.last_width ? m_slices.width : m_slices.last_width;
    }
}

unsigned slice_writer::inq_finished_rows() const noexcept {
    return m_left + m_width == m_mosaic.width ? m_row : 0;
}

} // namespace sdk_open
