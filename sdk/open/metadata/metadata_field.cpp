#include "sdk/open/metadata/metadata_field.h"

#include "sdk/open/little_endian.h"

#include <algorithm>
#include <tiff.h>

namespace sdk_open {
namespace {

std::vector<std::byte> bytes_of(std::string_view text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

metadata_field number_field(std::uint16_t tag, TIFFDataType type, std::uint32_t value, std::size_t size) {
    metadata_field field{tag, static_cast<std::uint16_t>(type), 1, {}};
    append_little_endian(field.bytes, value, size);
    return field;
}

} // namespace

const metadata_field* find_field(std::span<const metadata_field> fields, unsigned tag) noexcept {
    const auto found = std::ranges::find(fields, tag, &metadata_field::tag);
    return found != fields.end() ? &*found : nullptr;
}

metadata_field text_field(std::uint16_t tag, std::string_view text) {
    metadata_field field{tag, TIFF_ASCII, static_cast<std::uint32_t>(text.size() + 1), bytes_of(text)};
    field.bytes.push_back(std::byte{0});
    return field;
}

metadata_field undefined_field(std::uint16_t tag, std::string_view bytes) {
    return {tag, TIFF_UNDEFINED, static_cast<std::uint32_t>(bytes.size()), bytes_of(bytes)};
}

metadata_field short_field(std::uint16_t tag, std::uint16_t value) {
    return number_field(tag, TIFF_SHORT, value, 2);
}

metadata_field long_field(std::uint16_t tag, std::uint32_t value) {
    return number_field(tag, TIFF_LONG, value, 4);
}

metadata_field rational_field(std::uint16_t tag, std::span<const rational> values) {
    metadata_field field{tag, TIFF_RATIONAL, static_cast<std::uint32_t>(values.size()), {}};
    for (const rational& value : values) {
        append_little_endian(field.bytes, value.numerator, 4);
        append_little_endian(field.bytes, value.denominator, 4);
    }
    return field;
}

} // namespace sdk_open
