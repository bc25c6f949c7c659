#pragma once

#include "fuzz/sdk/open/raw_layout.h"
#include "sdk/open/little_endian.h"

#include <cstdint>
#include <vector>

// Collects the stretches of a file that may be damaged: what lies outside it is left out.
class layout_builder final {
public:
    explicit layout_builder(std::span<const std::byte> file) : m_file(file) {}

    [[nodiscard]] bool holds(std::size_t first, std::size_t size) const noexcept {
        return first <= m_file.size() && size <= m_file.size() - first;
    }

    // 0 outside the file.
    [[nodiscard]] std::uint32_t number_at(std::size_t first, std::size_t size) const noexcept {
        return holds(first, size) ? sdk_open::load_little_endian(m_file.subspan(first, size)) : 0;
    }

    void add(stretch_kind_t kind, std::size_t first, std::size_t size) {
        if (size > 0 && holds(first, size) && !is_full())
            m_found.push_back({kind, first, size});
    }

    // Directories that hold each other would have no end.
    [[nodiscard]] bool is_full() const noexcept { return m_found.size() >= most_stretches; }

    [[nodiscard]] std::span<const std::byte> inq_file() const noexcept { return m_file; }
    [[nodiscard]] const std::vector<stretch>& inq_found() const noexcept { return m_found; }

private:
    static constexpr std::size_t most_stretches = 4000;

    std::span<const std::byte> m_file;
    std::vector<stretch> m_found;
};
