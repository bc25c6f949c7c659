#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>

// The binary form of fixed-width values: 0x1234 is 12 34, whatever the machine.

template <std::unsigned_integral T>
[[nodiscard]] constexpr std::array<unsigned char, sizeof(T)> to_big_endian(T value) noexcept {
    std::array<unsigned char, sizeof(T)> bytes{};
    for (std::size_t i = 0; i < sizeof(T); ++i)
        bytes[i] = static_cast<unsigned char>(value >> (8 * (sizeof(T) - 1 - i)));
    return bytes;
}

template <std::unsigned_integral T>
[[nodiscard]] constexpr T from_big_endian(const std::array<unsigned char, sizeof(T)>& bytes) noexcept {
    T value = 0;
    for (std::size_t i = 0; i < sizeof(T); ++i)
        value = static_cast<T>(value | (static_cast<std::uint64_t>(bytes[i]) << (8 * (sizeof(T) - 1 - i))));
    return value;
}

// The variable-length form of an unsigned value below 2^30: the top bits of the first byte say how many bytes
// it has, 0 one, 10 two, 11 four.
inline constexpr std::uint16_t packed_marker_16 = 0x8000;
inline constexpr std::uint32_t packed_marker_32 = 0xC0000000;
inline constexpr std::uint32_t packed_end_8 = 0x80;
inline constexpr std::uint32_t packed_end_16 = 0x4000;
inline constexpr std::uint32_t packed_end_32 = 0x40000000;
