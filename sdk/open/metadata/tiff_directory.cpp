#include "sdk/open/metadata/tiff_directory.h"

#include "sdk/open/little_endian.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace sdk_open {
namespace {

constexpr std::size_t count_size = 2;
constexpr std::size_t entry_size = 12;
constexpr std::size_t value_at = 8; // in an entry: the value itself, or where it lies
constexpr std::size_t value_size = entry_size - value_at;
constexpr std::size_t most_entries = 1000;
constexpr std::size_t most_bytes = 1 << 20;

// Of one value, in bytes; 0 for a type that TIFF 6.0 does not know.
std::size_t unit_size(unsigned type) noexcept {
    constexpr std::array sizes = {0U, 1U, 1U, 2U, 4U, 8U, 1U, 1U, 2U, 4U, 8U, 4U, 8U};
    return type < sizes.size() ? sizes[type] : 0;
}

// Empty where the file has no such part.
std::span<const std::byte> part_of(std::span<const std::byte> file, std::size_t position,
                                   std::size_t size) noexcept {
    if (position > file.size() || size > file.size() - position)
        return {};
    return file.subspan(position, size);
}

std::span<const std::byte> entries_of(std::span<const std::byte> file, std::size_t position) noexcept {
    const std::size_t count = load_little_endian(part_of(file, position, count_size));
    return part_of(file, position + count_size, std::min(count, most_entries) * entry_size);
}

std::optional<metadata_field> read_entry(std::span<const std::byte> file, std::span<const std::byte> entry) {
    const auto tag = static_cast<std::uint16_t>(load_little_endian(entry.first(2)));
    const auto type = static_cast<std::uint16_t>(load_little_endian(entry.subspan(2, 2)));
    const std::uint32_t count = load_little_endian(entry.subspan(4, 4));
    const std::uint64_t n_bytes = std::uint64_t{count} * unit_size(type);
    if (n_bytes > most_bytes)
        return std::nullopt;
    const auto size = static_cast<std::size_t>(n_bytes);
    const auto field = entry.subspan(value_at, value_size);
    const auto value =
        size <= value_size ? field.first(size) : part_of(file, load_little_endian(field), size);
    if (value.empty())
        return std::nullopt;
    return metadata_field{tag, type, count, {value.begin(), value.end()}};
}

void pad_to(std::vector<std::byte>& bytes, std::size_t multiple) {
    while (bytes.size() % multiple != 0)
        bytes.push_back(std::byte{0});
}

} // namespace

std::vector<metadata_field> read_tiff_directory(std::span<const std::byte> file, std::size_t position) {
    std::vector<metadata_field> fields;
    std::size_t size = 0;
    for (auto left = entries_of(file, position); !left.empty(); left = left.subspan(entry_size)) {
        auto field = read_entry(file, left.first(entry_size));
        if (!field || find_field(fields, field->tag) != nullptr || field->bytes.size() > most_bytes - size)
            continue;
        size += field->bytes.size();
        fields.push_back(std::move(*field));
    }
    return fields;
}

std::vector<std::byte> make_tiff_directory(std::vector<metadata_field> fields, std::uint32_t position) {
    std::ranges::sort(fields, {}, &metadata_field::tag);
    std::vector<std::byte> directory;
    std::vector<std::byte> values;
    const std::size_t values_at = position + count_size + fields.size() * entry_size + sizeof position;
    append_little_endian(directory, static_cast<std::uint32_t>(fields.size()), count_size);
    for (metadata_field& field : fields) {
        append_little_endian(directory, field.tag, 2);
        append_little_endian(directory, field.type, 2);
        append_little_endian(directory, field.count, 4);
        if (field.bytes.size() <= value_size) {
            pad_to(field.bytes, value_size);
            directory.insert(directory.end(), field.bytes.begin(), field.bytes.end());
        } else {
            append_little_endian(directory, static_cast<std::uint32_t>(values_at + values.size()), 4);
            values.insert(values.end(), field.bytes.begin(), field.bytes.end());
            pad_to(values, 2);
        }
    }
    append_little_endian(directory, 0, 4); // no directory follows
    directory.insert(directory.end(), values.begin(), values.end());
    return directory;
}

} // namespace sdk_open
