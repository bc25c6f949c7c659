#include "sdk/open/identifying/ciff_heap.h"

#include "sdk/open/little_endian.h"

#include <cstdint>

namespace sdk_open {
namespace {

constexpr std::size_t heap_entry_size = 10;
constexpr std::uint32_t raw_data_record = 0x2005;

// The entries of the root directory: a count of two bytes, then ten bytes each.
std::span<const std::byte> root_entries(std::span<const std::byte> heap) noexcept {
    if (heap.size() < 4)
        return {};
    const std::size_t directory = load_little_endian(heap.last(4));
    if (directory > heap.size() - 4 || heap.size() - 4 - directory < 2)
        return {};
    const auto counted = heap.subspan(directory, heap.size() - 4 - directory);
    const std::size_t size = load_little_endian(counted.first(2)) * heap_entry_size;
    return size <= counted.size() - 2 ? counted.subspan(2, size) : std::span<const std::byte>{};
}

} // namespace

std::optional<byte_range> find_ciff_raw_data(std::span<const std::byte> bytes) {
    constexpr std::size_t header_length_at = 2;
    if (bytes.size() < header_length_at + 4)
        return std::nullopt;
    const std::size_t header = load_little_endian(bytes.subspan(header_length_at, 4));
    if (header > bytes.size())
        return std::nullopt;
    const auto heap = bytes.subspan(header);
    for (auto entries = root_entries(heap); !entries.empty(); entries = entries.subspan(heap_entry_size)) {
        if (load_little_endian(entries.first(2)) != raw_data_record)
            continue;
        const std::size_t length = load_little_endian(entries.subspan(2, 4));
        const std::size_t offset = load_little_endian(entries.subspan(6, 4));
        if (offset > heap.size() || length > heap.size() - offset)
            return std::nullopt;
        return byte_range{header + offset, header + offset + length};
    }
    return std::nullopt;
}

} // namespace sdk_open
