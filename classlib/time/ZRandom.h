#pragma once

#include <cstdint>

// The minimal standard random number generator of Park and Miller ("Random number generators: good ones are
// hard to find", Communications of the ACM 31, 1988): each value is 16807 times the last, modulo 2^31 - 1.
// Not for secrets. A copy goes on with the same sequence as its original.
class ZRandom final {
public:
    // Takes the low 31 bits of the seed; when they are all 0 the clock (seconds and milliseconds) is the
    // seed.
    explicit ZRandom(int seed) noexcept { set_seed(seed); }

    // Answers the new value. No step follows, so it is the seed itself.
    std::int32_t set_seed(int seed) noexcept;

    // One step; with the seed 1 it gives 16807, then 282475249. The value 2147483647 stays as it is, and 0
    // turns into it.
    void advance() noexcept;

    // The last value made, 1 to 2147483646.
    [[nodiscard]] std::int32_t inq_value() const noexcept { return m_value; }

    // The three low bytes of each value in turn, the lowest first.
    std::uint8_t next_byte() noexcept;

    // The low 16 bits of the next value; those of the next two, the first of them in the high half.
    std::uint16_t next_u16() noexcept;
    std::uint32_t next_u32() noexcept;

    // At least 0 and below 1.
    double next_double() noexcept;

    // The generator of the process, made on first use with a seed from the clock. Not for two threads at
    // once.
    [[nodiscard]] static ZRandom& instance() noexcept;

private:
    std::int32_t m_value = 0;
    std::int32_t m_byte_index = 0; // the byte of m_value that comes next; above 2 when all three are spent
};
