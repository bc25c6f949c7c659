#include "classlib/time/ZRandom.h"

#include "classlib/time/ZDateTime.h"

namespace {

constexpr std::int32_t multiplier = 16807;
constexpr std::int32_t modulus = 0x7FFFFFFF;
constexpr std::int32_t quotient = modulus / multiplier;  // 127773
constexpr std::int32_t remainder = modulus % multiplier; // 2836
constexpr std::int32_t all_bytes_spent = 3;

// The seconds with their halves swapped, so that the bits that change fastest end up high, and the
// milliseconds.
std::uint32_t inq_clock_seed() noexcept {
    ZDateTime now;
    now.set_now();
    const auto seconds = static_cast<std::int32_t>(static_cast<std::uint32_t>(now.m_time));
    const auto high_half = static_cast<std::uint32_t>(seconds >> 16);
    const auto low_half = static_cast<std::uint32_t>(seconds) << 16;
    return (static_cast<std::uint32_t>(now.m_millisecond) << 8) ^ (high_half | low_half);
}

} // namespace

std::int32_t ZRandom::set_seed(int seed) noexcept {
    m_value = seed & modulus;
    if (m_value == 0)
        m_value = static_cast<std::int32_t>(inq_clock_seed() & modulus);
    m_byte_index = all_bytes_spent;
    return m_value;
}

// Schrage's form of the product, in which nothing exceeds 32 bits.
void ZRandom::advance() noexcept {
    const std::int32_t high = m_value / quotient;
    const std::int32_t low = m_value - high * quotient;
    m_value = multiplier * low - remainder * high;
    if (m_value <= 0)
        m_value += modulus;
    m_byte_index = 0;
}

std::uint8_t ZRandom::next_byte() noexcept {
    if (m_byte_index >= all_bytes_spent)
        advance();
    const int shift = 8 * m_byte_index++;
    return static_cast<std::uint8_t>((m_value >> shift) & 0xFF);
}

std::uint16_t ZRandom::next_u16() noexcept {
    advance();
    m_byte_index = 2;
    return static_cast<std::uint16_t>(m_value & 0xFFFF);
}

std::uint32_t ZRandom::next_u32() noexcept {
    const std::uint32_t high_half = next_u16();
    return high_half << 16 | next_u16();
}

double ZRandom::next_double() noexcept {
    advance();
    m_byte_index = all_bytes_spent;
    return (m_value - 1) / static_cast<double>(modulus);
}

ZRandom& ZRandom::instance() noexcept {
    static ZRandom generator(0);
    return generator;
}
