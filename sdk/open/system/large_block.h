#pragma once

#include "sdk/open/system/system_calls.h"

#include <cstddef>
#include <memory>
#include <span>

namespace sdk_open {

// Bytes that are about to be filled as a whole: not initialised, and in large pages where the system has
// them.
class large_block final {
public:
    // Throws std::bad_alloc.
    explicit large_block(std::size_t size)
        : m_bytes(std::make_unique_for_overwrite<std::byte[]>(size)), m_size(size) {
        system_calls::prefer_large_pages(inq_bytes());
    }

    [[nodiscard]] std::span<std::byte> inq_bytes() const noexcept { return {m_bytes.get(), m_size}; }

private:
    std::unique_ptr<std::byte[]> m_bytes;
    std::size_t m_size;
};

} // namespace sdk_open
