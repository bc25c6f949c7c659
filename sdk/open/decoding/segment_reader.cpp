#include "sdk/open/decoding/segment_reader.h"

#include "sdk/open/decoding/byte_stuffing.h"
#include "sdk/open/failure.h"

#include <algorithm>

namespace sdk_open {

bit_cursor segment_reader::resume(std::size_t size) noexcept {
    if (m_bit / 8 + size + read_ahead > m_end)
        fill_block();
    return {m_block.data(), m_bit};
}

void segment_reader::suspend(const bit_cursor& cursor) {
    m_bit = cursor.inq_distance(m_block.data());
    if (m_bit > m_end * 8)
        throw_damaged("the pixel data end early");
}

std::span<const std::byte> segment_reader::finish() {
    constexpr std::size_t most_padding = 3; // bytes, where an encoder fills up to a multiple of four
    fill_block();
    const std::size_t used = (m_bit + 7) / 8;
    if (m_end > used + most_padding)
        throw_damaged("the pixel data do not end where they should");
    return m_stuffed;
}

void segment_reader::fill_block() noexcept {
    const std::size_t used = std::min(m_bit / 8, m_end);
    std::copy(m_block.begin() + used, m_block.begin() + m_end, m_block.begin());
    m_end -= used;
    m_bit -= used * 8;
    const auto room = std::span(m_block).subspan(m_end, m_block.size() - read_ahead - m_end);
    const unstuffed_bytes more = remove_stuffing(m_stuffed, room);
    m_stuffed = m_stuffed.subspan(more.n_read);
    m_end += more.n_written;
    std::fill(m_block.begin() + m_end, m_block.end(), std::byte{0});
}

} // namespace sdk_open
