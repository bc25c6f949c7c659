#pragma once

#include "platform/utf16.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace platform {

// An open file, closed at the end of its life. A failed operation leaves its cause in errno. Paths are as in
// platform/files.h.
class file_handle final {
public:
    // Opens an existing regular file; anything else is refused, and so is a null or empty path.
    [[nodiscard]] static file_handle open_to_read(const utf16_t* path) noexcept;

    // Creates a file that only its owner may read and write. Neither replaces nor follows an entry that
    // already has the name: that fails.
    [[nodiscard]] static file_handle create_to_write(const utf16_t* path) noexcept;

    file_handle(file_handle&& other) noexcept;
    file_handle& operator=(file_handle&&) = delete;
    ~file_handle();

    [[nodiscard]] bool is_open() const noexcept { return m_descriptor >= 0; }

    // The number of bytes that the file holds; -1 on failure.
    [[nodiscard]] std::int64_t inq_size() const noexcept;

    // Reads up to target.size() bytes, at least one unless the file ends. Answers their number, 0 at the end
    // of the file, -1 on failure.
    [[nodiscard]] std::ptrdiff_t read(std::span<std::byte> target) noexcept;

    // Writes all bytes, or fails.
    [[nodiscard]] bool write(std::span<const std::byte> bytes) noexcept;

    // Closes the file; false when the system reports only now that bytes were lost.
    [[nodiscard]] bool close() noexcept;

private:
    explicit file_handle(int descriptor) noexcept : m_descriptor(descriptor) {}

    int m_descriptor;
};

} // namespace platform
