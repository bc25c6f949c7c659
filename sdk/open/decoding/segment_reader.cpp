#include "sdk/open/decoding/segment_reader.h"

#include "sdk/open/failure.h"

#include <algorithm>
#include <cstring>

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
    while (!m_is_at_marker && m_end < m_block.size() - read_ahead)
        append_run();
    std::fill(m_block.begin() + m_end, m_block.end(), std::byte{0});
}

// Appends what lies before the next byte ff, and that byte as well if it is one of the segment's own.
void segment_reader::append_run() noexcept {
    const std::size_t room = m_block.size() - read_ahead - m_end;
    const auto bytes = m_stuffed.first(std::min(room, m_stuffed.size()));
    const void* const found = bytes.empty() ? nullptr : std::memchr(bytes.data(), 0xff, bytes.size());
    const std::size_t run =
        found != nullptr ? static_cast<std::size_t>(static_cast<const std::byte*>(found) - bytes.data())
                         : bytes.size();
    std::copy_n(bytes.begin(), run, m_block.begin() + m_end);
    m_end += run;
    m_stuffed = m_stuffed.subspan(run);
    if (found == nullptr) {
        m_is_at_marker = m_stuffed.empty();
    } else if (m_stuffed.size() >= 2 && m_stuffed[1] == std::byte{0}) {
        m_block[m_end++] = m_stuffed[0];
        m_stuffed = m_stuffed.subspan(2);
    } else {
        m_is_at_marker = true;
    }
}

} // namespace sdk_open
