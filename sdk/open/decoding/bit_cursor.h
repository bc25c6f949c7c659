#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

namespace sdk_open {

// Bytes 12 34 56 78 9a bc de f0 give 0x123456789abcdef0.
[[nodiscard]] inline std::uint64_t load_big_endian(const std::byte* bytes) noexcept {
    return [bytes]<std::size_t... At>(std::index_sequence<At...>) {
        return (... | (std::to_integer<std::uint64_t>(bytes[At]) << (56 - 8 * At)));
    }
    (std::make_index_sequence<8>{});
}

// Reads bits, the highest one of a byte first. It checks no bounds: whoever makes one sees to it that 16
// bytes can be read beyond the last bit that is wanted. Nothing in it branches, so a loop over a copy of it
// keeps all of it in registers.
class bit_cursor final {
public:
    static constexpr unsigned bits_after_refill = 56;

    bit_cursor(const std::byte* bytes, std::size_t first_bit) noexcept : m_next(bytes + first_bit / 8) {
        refill();
        skip(first_bit % 8);
    }

    // Has at least bits_after_refill bits at hand afterwards. The bits below those that count are already the
    // ones that come next, so that setting them again changes nothing.
    void refill() noexcept {
        m_bits |= load_big_endian(m_next) >> m_count;
        m_next += (63 - m_count) / 8;
        m_count |= bits_after_refill;
    }

    // The bits at hand, the next one at the top.
    [[nodiscard]] std::uint64_t inq_bits() const noexcept { return m_bits; }
    [[nodiscard]] unsigned inq_count() const noexcept { return m_count; }

    // Moves on by no more bits than are at hand, and fewer than 64.
    void skip(unsigned count) noexcept {
        m_bits <<= count;
        m_count -= count;
    }

    // How many bits lie between the first of these bytes and the next bit.
    [[nodiscard]] std::size_t inq_distance(const std::byte* bytes) const noexcept {
        return static_cast<std::size_t>(m_next - bytes) * 8 - m_count;
    }

private:
    const std::byte* m_next;  // the first byte of which not all bits are at hand
    std::uint64_t m_bits = 0; // from the top
    unsigned m_count = 0;
};

} // namespace sdk_open
