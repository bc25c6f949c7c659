#include "sdk/open/metadata/cr2_metadata.h"

#include "sdk/open/little_endian.h"
#include "sdk/open/metadata/tiff_directory.h"

#include <algorithm>
#include <array>
#include <tiff.h>

namespace sdk_open {
namespace {

using field_list = std::vector<metadata_field>;

// Null also where it is of another type.
const metadata_field* field_of(const field_list& fields, unsigned tag, TIFFDataType type) {
    const metadata_field* found = find_field(fields, tag);
    return found != nullptr && found->type == type ? found : nullptr;
}

// As far as its first zero; empty where there is none.
std::string text_of(const field_list& fields, unsigned tag) {
    std::string text;
    if (const metadata_field* field = field_of(fields, tag, TIFF_ASCII))
        for (const std::byte unit : field->bytes) {
            if (unit == std::byte{0})
                break;
            text.push_back(static_cast<char>(unit));
        }
    return text;
}

// What points elsewhere in the raw file means nothing outside it: other directories, and the maker's own
// notes, which are full of such offsets.
bool points_into_file(const metadata_field& field) {
    constexpr std::array tags = {TIFFTAG_SUBIFD, TIFFTAG_EXIFIFD, TIFFTAG_GPSIFD, TIFFTAG_INTEROPERABILITYIFD,
                                 EXIFTAG_MAKERNOTE};
    return std::ranges::find(tags, field.tag) != tags.end();
}

// The fields of the directory that a field of the first one points to; none where there is no such field.
field_list fields_below(std::span<const std::byte> bytes, const field_list& fields, unsigned tag) {
    const metadata_field* pointer = field_of(fields, tag, TIFF_LONG);
    if (pointer == nullptr || pointer->count != 1)
        return {};
    field_list found = read_tiff_directory(bytes, load_little_endian(pointer->bytes));
    std::erase_if(found, points_into_file);
    return found;
}

} // namespace

// Of the first directory's texts go along those about the shot and its author. Not so Software, for the
// camera's firmware did not make the TIFF, and Rating, which ranks the raw file among others.
picture_metadata read_cr2_metadata(std::span<const std::byte> bytes) {
    constexpr std::size_t first_directory_at = 4;
    if (bytes.size() < first_directory_at + 4)
        return {};
    const auto fields = read_tiff_directory(bytes, load_little_endian(bytes.subspan(first_directory_at, 4)));
    picture_metadata found;
    found.description = text_of(fields, TIFFTAG_IMAGEDESCRIPTION);
    found.make = text_of(fields, TIFFTAG_MAKE);
    found.model = text_of(fields, TIFFTAG_MODEL);
    found.date_time = text_of(fields, TIFFTAG_DATETIME);
    found.artist = text_of(fields, TIFFTAG_ARTIST);
    found.copyright = text_of(fields, TIFFTAG_COPYRIGHT);
    found.exif = fields_below(bytes, fields, TIFFTAG_EXIFIFD);
    found.gps = fields_below(bytes, fields, TIFFTAG_GPSIFD);
    return found;
}

} // namespace sdk_open
