#include "fuzz/sdk/open/layout_builder.h"

// A .crw is a heap of records: values, then a directory of them, then where in the heap the directory is. A
// record may be a heap itself.
namespace {

constexpr std::size_t entry_size = 10;
constexpr unsigned pixel_data = 0x2005;

bool is_within_entry(unsigned tag) noexcept {
    return (tag & 0x4000U) != 0;
}

bool is_heap(unsigned tag) noexcept {
    return (tag & 0x3800U) == 0x2800 || (tag & 0x3800U) == 0x3000;
}

void read_heap(layout_builder& layout, std::size_t first, std::size_t size, unsigned depth);

void read_entry(layout_builder& layout, std::size_t heap, std::size_t first, unsigned depth) {
    if (!layout.holds(first, entry_size))
        return;
    const unsigned tag = layout.number_at(first, 2);
    const std::size_t size = layout.number_at(first + 2, 4);
    const std::size_t value = heap + layout.number_at(first + 6, 4);
    layout.add(stretch_kind_t::entry, first, 2);
    if (is_within_entry(tag)) {
        layout.add(stretch_kind_t::value, first + 2, 8);
        return;
    }
    layout.add(stretch_kind_t::entry, first + 2, 4);
    layout.add(stretch_kind_t::entry, first + 6, 4);
    if (is_heap(tag) && depth < 4)
        read_heap(layout, value, size, depth + 1);
    else
        layout.add(tag == pixel_data ? stretch_kind_t::codes : stretch_kind_t::value, value, size);
}

void read_heap(layout_builder& layout, std::size_t first, std::size_t size, unsigned depth) {
    if (size < 4 || !layout.holds(first, size))
        return;
    const std::size_t directory = first + layout.number_at(first + size - 4, 4);
    const std::size_t count = layout.number_at(directory, 2);
    layout.add(stretch_kind_t::entry, first + size - 4, 4);
    layout.add(stretch_kind_t::entry, directory, 2);
    for (std::size_t n = 0; n < count && !layout.is_full(); ++n)
        read_entry(layout, first, directory + 2 + n * entry_size, depth);
}

} // namespace

std::vector<stretch> find_crw_stretches(std::span<const std::byte> file) {
    layout_builder layout(file);
    const std::size_t heap = layout.number_at(2, 4);
    if (heap <= file.size())
        read_heap(layout, heap, file.size() - heap, 0);
    return layout.inq_found();
}
