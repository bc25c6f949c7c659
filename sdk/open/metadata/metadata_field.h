#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace sdk_open {

// A tag and its values, as a TIFF directory holds them.
struct metadata_field {
    std::uint16_t tag;
    std::uint16_t type;           // TIFF's number of it, for example 3 for a short
    std::uint32_t count;          // values, not bytes
    std::vector<std::byte> bytes; // of all values, each little-endian
};

// The first field with this tag; null where there is none.
[[nodiscard]] const metadata_field* find_field(std::span<const metadata_field> fields, unsigned tag) noexcept;

struct rational {
    std::uint32_t numerator;
    std::uint32_t denominator;
};

// Fields of the types that we make ourselves. A text gets the zero that ends it.
[[nodiscard]] metadata_field text_field(std::uint16_t tag, std::string_view text);
[[nodiscard]] metadata_field undefined_field(std::uint16_t tag, std::string_view bytes);
[[nodiscard]] metadata_field short_field(std::uint16_t tag, std::uint16_t value);
[[nodiscard]] metadata_field long_field(std::uint16_t tag, std::uint32_t value);
[[nodiscard]] metadata_field rational_field(std::uint16_t tag, std::span<const rational> values);

} // namespace sdk_open
