#pragma once

#include "sdk/open/system/output_file.h"
#include "sdk/open/writing/tiff_cursor.h"
#include "sdk/open/writing/tiff_handle.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <span>

namespace sdk_open {

// The output file as libtiff writes it. No exception may pass through libtiff: the first one waits here.
class file_sink final {
public:
    // The file must outlive the sink.
    explicit file_sink(output_file& file) noexcept : m_file(file) {}
    file_sink(const file_sink&) = delete;
    file_sink& operator=(const file_sink&) = delete;

    // The sink must outlive what is opened on it.
    [[nodiscard]] tiff_storage inq_storage() noexcept { return {this, refuse_to_read, write, seek, size}; }

    [[nodiscard]] std::uint64_t inq_size() const noexcept { return m_cursor.size; }

    // Writes at the file's end, past libtiff. Throws failure.
    void append(std::span<const std::byte> bytes);

    // Throws the exception that waits, if there is one.
    void rethrow() const;

private:
    static tmsize_t refuse_to_read(thandle_t, void*, tmsize_t) noexcept { return -1; }
    static tmsize_t write(thandle_t client, void* source, tmsize_t count) noexcept;
    static toff_t seek(thandle_t client, toff_t offset, int origin) noexcept;
    static toff_t size(thandle_t client) noexcept;

    output_file& m_file;
    tiff_cursor m_cursor;
    std::exception_ptr m_failure;
};

} // namespace sdk_open
