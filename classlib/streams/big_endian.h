#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

// The binary form of fixed-width values: 0x1234 is 12 34, whatever the machine.

template <std::unsigned_integral T>
[[nodiscard]] constexpr std::array<unsigned char, sizeof(T)> to_big_endian(T value) noexcept {
    std::array<unsigned char, sizeof(T)> bytes{};
    for (std::size_t i = 0; i < sizeof(T); ++i)
        bytes[i] = static_cast<unsigned char>(value >> (8 * (sizeof(T) - 1 - i)));
    return bytes;
}

template <std::unsigned_integral T>
[[nodiscard]] constexpr T from_big_endian(std::span<const unsigned char, sizeof(T)> bytes) noexcept {
    return [bytes]<std::size_t... I>(std::index_sequence<I...>) {
        return static_cast<T>(((T{bytes[I]} << (8 * (sizeof(T) - 1 - I))) | ...)); // one load and one swap
    }
    (std::make_index_sequence<sizeof(T)>());
}

// The variable-length form of an unsigned value below 2^30: the top bits of the first byte say how many bytes
// it has, 0 one, 10 two, 11 four.
inline constexpr std::uint16_t packed_marker_16 = 0x8000;
inline constexpr std::uint32_t packed_marker_32 = 0xC0000000;
inline constexpr std::uint32_t packed_end_8 = 0x80;
inline constexpr std::uint32_t packed_end_16 = 0x4000;
inline constexpr std::uint32_t packed_end_32 = 0x40000000;
