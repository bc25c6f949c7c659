#pragma once

#include <cstddef>
#include <vector>

namespace sdk_open {

// The last rows of a plane that grows downwards: a row takes the place of the one Count rows above it.
template <int Count>
class picture_rows final {
    static_assert((Count & (Count - 1)) == 0, "rows are found by the low bits of their numbers");

public:
    // Each row holds columns from -margin on, size of them. Throws std::bad_alloc.
    picture_rows(std::size_t size, std::size_t margin)
        : m_size(size), m_margin(margin), m_samples(size * Count) {}

    // Column 0 of a row; rows above the first one have negative numbers.
    [[nodiscard]] float* operator[](int row) noexcept {
        const auto place = static_cast<unsigned>(row) % unsigned{Count};
        return m_samples.data() + place * m_size + m_margin;
    }

private:
    std::size_t m_size;
    std::size_t m_margin;
    std::vector<float> m_samples;
};

} // namespace sdk_open
