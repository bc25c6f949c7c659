#include "classlib/streams/ZFileRStream.h"

#include <cstddef>
#include <span>

namespace {

constexpr int read_size = 65536;

} // namespace

ZFileRStream::ZFileRStream(const ZFileLocation& location)
    : m_file(platform::file_handle::open_to_read(location.inq_path())),
      m_source_size(m_file.is_open() ? m_file.inq_size() : -1),
      m_block(read_size) {
    if (!m_file.is_open())
        set_error(rstreamerr_read_failed);
}

void ZFileRStream::close() {
    if (m_file.is_open())
        static_cast<void>(m_file.close());
}

bool ZFileRStream::fill_buffer(const unsigned char*& block, int& size) {
    if (!m_file.is_open())
        return false;
    const std::ptrdiff_t n_read =
        m_file.read(std::as_writable_bytes(std::span(m_block.inq_data(), read_size)));
    if (n_read < 0)
        set_error(rstreamerr_read_failed);
    if (n_read <= 0)
        return false;
    block = m_block.inq_data();
    size = static_cast<int>(n_read);
    return true;
}
