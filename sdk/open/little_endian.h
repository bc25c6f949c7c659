#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace sdk_open {

// Bytes 12 34 give 0x3412. There may be one to four of them.
[[nodiscard]] constexpr std::uint32_t load_little_endian(std::span<const std::byte> bytes) noexcept {
    std::uint32_t value = 0;
    for (std::size_t at = bytes.size(); at > 0; --at)
        value = value << 8 | std::to_integer<std::uint32_t>(bytes[at - 1]);
    return value;
}

// 0x3412 appends the bytes 12 34 where size is 2; at most four.
inline void append_little_endian(std::vector<std::byte>& bytes, std::uint32_t value, std::size_t size) {
    for (std::size_t at = 0; at < size; ++at)
        bytes.push_back(static_cast<std::byte>(value >> 8 * at & 0xffU));
}

} // namespace sdk_open
