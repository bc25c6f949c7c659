#include "fuzz/sdk/open/layout_builder.h"

#include <array>

// A .cr2 is a chain of TIFF directories. The pixel data, a lossless JPEG, belong to the last one.
namespace {

constexpr std::size_t entry_size = 12;
constexpr unsigned strip_offset = 0x111;

std::size_t unit_size(unsigned type) noexcept {
    constexpr std::array<std::size_t, 13> sizes = {1, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8};
    return type < sizes.size() ? sizes[type] : 1;
}

bool is_directory(unsigned tag) noexcept {
    return tag == 0x8769 || tag == 0x8825 || tag == 0x927c; // EXIF, GPS, the maker's notes
}

class cr2_reader final {
public:
    explicit cr2_reader(std::span<const std::byte> file) : m_layout(file) {
        std::size_t next = m_layout.number_at(4, 4);
        for (unsigned n = 0; n < 8 && next != 0; ++n)
            next = read_directory(next, 0);
        read_jpeg(m_strip);
    }

    [[nodiscard]] const std::vector<stretch>& inq_found() const noexcept { return m_layout.inq_found(); }

private:
    // Answers where the next one is.
    std::size_t read_directory(std::size_t first, unsigned depth) {
        const std::size_t count = m_layout.number_at(first, 2);
        m_layout.add(stretch_kind_t::entry, first, 2);
        for (std::size_t n = 0; n < count && !m_layout.is_full(); ++n)
            read_entry(first + 2 + n * entry_size, depth);
        return m_layout.number_at(first + 2 + count * entry_size, 4);
    }

    void read_entry(std::size_t first, unsigned depth) {
        if (!m_layout.holds(first, entry_size))
            return;
        for (const auto& [at, size] : {std::array<std::size_t, 2>{0, 2}, {2, 2}, {4, 4}, {8, 4}})
            m_layout.add(stretch_kind_t::entry, first + at, size);
        const unsigned tag = m_layout.number_at(first, 2);
        const std::size_t size =
            m_layout.number_at(first + 4, 4) * unit_size(m_layout.number_at(first + 2, 2));
        const std::size_t value = m_layout.number_at(first + 8, 4);
        if (tag == strip_offset)
            m_strip = value;
        if (is_directory(tag) && depth < 3)
            read_directory(value, depth + 1);
        else if (size > 4)
            m_layout.add(stretch_kind_t::value, value, size);
    }

    [[nodiscard]] unsigned byte_at(std::size_t at) const noexcept { return m_layout.number_at(at, 1); }

    void read_jpeg(std::size_t first) {
        constexpr unsigned start_of_scan = 0xda;
        unsigned marker = 0;
        for (std::size_t at = first + 2; marker != start_of_scan && byte_at(at) == 0xff;) {
            marker = byte_at(at + 1);
            if (marker == 0xff) { // fills up
                ++at;
                continue;
            }
            const std::size_t size = byte_at(at + 2) * 256 + byte_at(at + 3);
            m_layout.add(stretch_kind_t::header, at, size + 2);
            at += size + 2;
            if (marker == start_of_scan)
                m_layout.add(stretch_kind_t::codes, at, m_layout.inq_file().size() - at);
        }
    }

    layout_builder m_layout;
    std::size_t m_strip = 0; // of the last directory that has one
};

} // namespace

std::vector<stretch> find_cr2_stretches(std::span<const std::byte> file) {
    return cr2_reader(file).inq_found();
}
