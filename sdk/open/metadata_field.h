#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <tiffio.h>
#include <variant>
#include <vector>

namespace sdk_open {

// Several values of one field, laid out as libtiff hands them out and takes them back.
struct field_array {
    std::uint32_t count;
    std::vector<std::byte> bytes;
};

// A tag and its value: a text, one number, or an array.
struct metadata_field {
    std::uint32_t tag;
    std::variant<std::string, double, field_array> value;
};

// A field of the directory that the file has just read; nothing where it is not there, or where libtiff has
// no definition of it.
[[nodiscard]] std::optional<metadata_field> fetch_field(TIFF* file, std::uint32_t tag);

// Puts a field into the directory that the file is making. False where libtiff does not take it there.
[[nodiscard]] bool store_field(TIFF* file, const metadata_field& field);

} // namespace sdk_open
