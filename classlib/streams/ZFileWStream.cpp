#include "classlib/streams/ZFileWStream.h"

#include <cstddef>
#include <span>

namespace {

constexpr int block_size = 65536;

std::span<const std::byte> as_bytes(const void* data, int n) noexcept {
    return {static_cast<const std::byte*>(data), static_cast<std::size_t>(n)};
}

} // namespace

ZFileWStream::ZFileWStream(const ZFileLocation& location)
    : m_held(block_size),
      m_file(platform::file_handle::create_to_write(location.inq_path())),
      m_is_ok(m_file.is_open()) {
    m_held.empty();
}

bool ZFileWStream::write_bytes(const void* data, int n) {
    if (!m_is_ok || n <= 0)
        return m_is_ok;
    if (n > m_held.inq_data_size() - m_held.inq_n_bytes() && !flush())
        return false;
    m_is_ok = n < block_size ? m_held.append(data, n) : m_file.write(as_bytes(data, n));
    return m_is_ok;
}

bool ZFileWStream::flush() {
    m_is_ok = m_is_ok && m_file.write(as_bytes(m_held.inq_data(), m_held.inq_n_bytes()));
    m_held.empty();
    return m_is_ok;
}

bool ZFileWStream::close() {
    if (!m_file.is_open())
        return false;
    const bool is_written = flush();
    const bool is_closed = m_file.close();
    m_is_ok = false;
    return is_written && is_closed;
}
