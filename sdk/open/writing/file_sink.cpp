#include "sdk/open/writing/file_sink.h"

namespace sdk_open {

void file_sink::append(std::span<const std::byte> bytes) {
    m_file.write_at(m_cursor.size, bytes);
    m_cursor.size += bytes.size();
}

void file_sink::rethrow() const {
    if (m_failure)
        std::rethrow_exception(m_failure);
}

tmsize_t file_sink::write(thandle_t client, void* source, tmsize_t count) noexcept {
    if (source == nullptr) // libtiff found no memory for what it was to write
        return -1;
    auto& self = *static_cast<file_sink*>(client);
    try {
        const auto length = static_cast<std::size_t>(count);
        self.m_file.write_at(self.m_cursor.position, {static_cast<const std::byte*>(source), length});
        self.m_cursor.advance(length);
        return count;
    } catch (...) {
        if (!self.m_failure)
            self.m_failure = std::current_exception();
        return -1;
    }
}

toff_t file_sink::seek(thandle_t client, toff_t offset, int origin) noexcept {
    return static_cast<file_sink*>(client)->m_cursor.seek(offset, origin);
}

toff_t file_sink::size(thandle_t client) noexcept {
    return static_cast<file_sink*>(client)->m_cursor.size;
}

} // namespace sdk_open
