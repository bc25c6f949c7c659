#include "sdk/open/identifying/canon_directories.h"

#include "sdk/open/failure.h"
#include "sdk/open/identifying/ciff_heap.h"
#include "sdk/open/little_endian.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <tiff.h>
#include <utility>

namespace sdk_open {
namespace {

constexpr std::size_t directory_entry_size = 12;
constexpr std::size_t value_at = 8; // in an entry: the value itself, or where it lies
constexpr std::size_t most_entries = 500;
constexpr std::size_t most_pictures = 8;

enum class directory_t { picture, exif, gps, notes };

struct tag_range {
    unsigned first;
    unsigned last;
};

constexpr std::array picture_tags = {
    tag_range{0x100, 0x103},   tag_range{0x106, 0x106},   tag_range{0x10e, 0x112},
    tag_range{0x115, 0x117},   tag_range{0x11a, 0x11c},   tag_range{0x128, 0x128},
    tag_range{0x131, 0x132},   tag_range{0x13b, 0x13b},   tag_range{0x201, 0x202},
    tag_range{0x8298, 0x8298}, tag_range{0x8769, 0x8769}, tag_range{0x8825, 0x8825},
    tag_range{0xc5d8, 0xc5e0}, tag_range{0xc640, 0xc640}, tag_range{0xc6c5, 0xc6c5},
    tag_range{0xc6dc, 0xc6dc},
};
constexpr std::array exif_tags = {
    tag_range{0x829a, 0x829d}, tag_range{0x8822, 0x8835}, tag_range{0x9000, 0x9292},
    tag_range{0xa000, 0xa005}, tag_range{0xa20b, 0xa217}, tag_range{0xa300, 0xa435},
};
constexpr std::array gps_tags = {tag_range{0, 0x1f}};
constexpr std::array notes_tags = {tag_range{0, 0xff}, tag_range{0x4000, 0x40ff}};

std::span<const tag_range> tags_of(directory_t kind) noexcept {
    switch (kind) {
    case directory_t::picture:
        return picture_tags;
    case directory_t::exif:
        return exif_tags;
    case directory_t::gps:
        return gps_tags;
    default:
        return notes_tags;
    }
}

bool is_known(directory_t kind, unsigned tag) noexcept {
    return std::ranges::any_of(
        tags_of(kind), [=](const tag_range& range) { return tag >= range.first && tag <= range.last; });
}

class directory_walk final {
public:
    explicit directory_walk(std::span<const std::byte> bytes) noexcept : m_bytes(bytes) {}

    // One picture's directory follows another.
    void walk_pictures() {
        constexpr std::size_t first_picture_at = 4;
        std::size_t next = number_at(first_picture_at, 4);
        for (std::size_t n = 0; next != 0; ++n) {
            const std::size_t first = next;
            if (n == most_pictures || !claim(first))
                throw_damaged("the file ends early or its structure is damaged");
            look_through(first, directory_t::picture);
            walk_pointed();
            next = number_at(first + 2 + number_at(first, 2) * directory_entry_size, 4);
        }
    }

    [[nodiscard]] std::vector<std::size_t> take_foreign() && {
        std::ranges::sort(m_foreign);
        return std::move(m_foreign);
    }

private:
    struct entry {
        std::size_t first;
        unsigned tag;
        unsigned type;
        std::size_t count;
        std::size_t value;
    };

    // A directory that an entry points to.
    struct pointed {
        std::size_t entry;
        std::size_t first;
        directory_t kind;
    };

    [[nodiscard]] bool holds(std::size_t first, std::size_t size) const noexcept {
        return first <= m_bytes.size() && size <= m_bytes.size() - first;
    }

    // 0 outside the file.
    [[nodiscard]] std::uint32_t number_at(std::size_t first, std::size_t size) const noexcept {
        return holds(first, size) ? load_little_endian(m_bytes.subspan(first, size)) : 0;
    }

    [[nodiscard]] bool starts_with(std::size_t first, std::string_view text) const noexcept {
        return holds(first, text.size()) &&
               std::ranges::equal(m_bytes.subspan(first, text.size()), std::as_bytes(std::span(text)));
    }

    // Whether there is a directory that overlaps none of those before it.
    [[nodiscard]] bool claim(std::size_t first) {
        const std::size_t count = number_at(first, 2);
        const std::size_t size = 2 + count * directory_entry_size + 4;
        const auto overlaps = [=](const byte_range& other) {
            return first < other.end && other.first < first + size;
        };
        if (count > most_entries || !holds(first, size) || std::ranges::any_of(m_directories, overlaps))
            return false;
        m_directories.push_back({first, first + size});
        return true;
    }

    void walk_pointed() {
        while (!m_pointed.empty()) {
            const pointed next = m_pointed.back();
            m_pointed.pop_back();
            if (claim(next.first))
                look_through(next.first, next.kind);
            else
                m_foreign.push_back(next.entry);
        }
    }

    void look_through(std::size_t directory, directory_t kind) {
        const std::size_t end = directory + 2 + number_at(directory, 2) * directory_entry_size;
        for (std::size_t first = directory + 2; first < end; first += directory_entry_size) {
            const entry found{first, number_at(first, 2), number_at(first + 2, 2), number_at(first + 4, 4),
                              number_at(first + value_at, 4)};
            if (!is_known(kind, found.tag) || !is_sound(found, kind))
                m_foreign.push_back(first);
        }
    }

    // Takes note of the directory that an entry points to, and looks at the maker's name.
    [[nodiscard]] bool is_sound(const entry& found, directory_t kind) {
        const bool points = found.type == TIFF_LONG && found.count == 1;
        if (found.tag == TIFFTAG_STRIPOFFSETS || found.tag == TIFFTAG_JPEGIFOFFSET) {
            refuse_directories_within(found.value);
            return points;
        }
        if (kind == directory_t::picture && found.tag == TIFFTAG_MAKE)
            check_maker(found);
        else if (kind == directory_t::picture && found.tag == TIFFTAG_EXIFIFD)
            return note_if(points, found, directory_t::exif);
        else if (kind == directory_t::picture && found.tag == TIFFTAG_GPSIFD)
            return note_if(points, found, directory_t::gps);
        else if (kind == directory_t::exif && found.tag == EXIFTAG_MAKERNOTE)
            return note_if(found.type == TIFF_UNDEFINED && found.count > 4 && !is_marked(found.value), found,
                           directory_t::notes);
        return true;
    }

    bool note_if(bool points, const entry& found, directory_t kind) {
        if (points)
            m_pointed.push_back({found.first, found.value, kind});
        return points;
    }

    // LibRaw tells some makers' notes by what stands in front of them. Other makers' marks stand where a
    // directory's count does, and make more entries than there may be.
    [[nodiscard]] bool is_marked(std::size_t notes) const noexcept {
        constexpr std::size_t distance = 12;
        return notes < distance || starts_with(notes - distance, "SONY") ||
               starts_with(notes - distance, "VHAB");
    }

    // LibRaw goes on with the directories within a JPEG, where there may be any. Canon's pictures have none.
    void refuse_directories_within(std::size_t jpeg) const {
        constexpr std::size_t directories_at = 12;
        constexpr unsigned start_of_image = 0xd8; // after ff, which LibRaw does not ask for
        if (number_at(jpeg + 1, 1) == start_of_image &&
            (starts_with(jpeg + directories_at, "II") || starts_with(jpeg + directories_at, "MM")))
            throw_no_raw_picture();
    }

    void check_maker(const entry& found) const {
        constexpr std::size_t value_size = directory_entry_size - value_at;
        const std::size_t text = found.count > value_size ? found.value : found.first + value_at;
        if (found.type != TIFF_ASCII || !starts_with(text, "Canon"))
            throw_no_raw_picture();
    }

    std::span<const std::byte> m_bytes;
    std::vector<byte_range> m_directories;
    std::vector<pointed> m_pointed; // and not walked yet
    std::vector<std::size_t> m_foreign;
};

} // namespace

std::vector<std::size_t> find_foreign_entries(std::span<const std::byte> bytes) {
    directory_walk walk(bytes);
    walk.walk_pictures();
    return std::move(walk).take_foreign();
}

} // namespace sdk_open
