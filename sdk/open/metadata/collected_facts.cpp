#include "sdk/open/metadata/collected_facts.h"

#include "sdk/open/identifying/camera_frame.h"
#include "sdk/open/identifying/flip.h"
#include "sdk/open/little_endian.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <tiff.h>
#include <utility>

namespace sdk_open {
namespace {

using field_list = std::vector<metadata_field>;

// No maker's text is longer, but a hostile file's may be.
constexpr std::size_t most_text = 200;

// The bytes of a field's values; none where there is no such field of this type and number of bytes.
std::span<const std::byte> bytes_of(const field_list& fields, std::uint16_t tag, TIFFDataType type,
                                    std::size_t least_size) {
    const metadata_field* found = find_field(fields, tag);
    if (found == nullptr || found->type != type || found->bytes.size() < least_size)
        return {};
    return found->bytes;
}

double rational_of(const field_list& fields, std::uint16_t tag) {
    const auto bytes = bytes_of(fields, tag, TIFF_RATIONAL, 8);
    if (bytes.empty())
        return 0;
    const std::uint32_t denominator = load_little_endian(bytes.subspan(4, 4));
    return denominator == 0 ? 0 : static_cast<double>(load_little_endian(bytes.first(4))) / denominator;
}

unsigned short_of(const field_list& fields, std::uint16_t tag) {
    const auto bytes = bytes_of(fields, tag, TIFF_SHORT, 2);
    return bytes.empty() ? 0 : load_little_endian(bytes.first(2));
}

std::string shortened_text_of(const field_list& fields, std::uint16_t tag) {
    std::string text;
    for (const std::byte unit : bytes_of(fields, tag, TIFF_ASCII, 1)) {
        if (unit == std::byte{0} || text.size() == most_text)
            break;
        text.push_back(static_cast<char>(unit));
    }
    return text;
}

// Damage, and a camera whose clock was never set, leave other characters than digits.
bool is_date_time(std::string_view text) {
    constexpr std::string_view form = "dddd:dd:dd dd:dd:dd";
    return std::ranges::equal(text, form, [](char unit, char wanted) {
        return wanted == 'd' ? '0' <= unit && unit <= '9' : unit == wanted;
    });
}

// With dashes in the date, as elsewhere than in EXIF.
std::string date_time_of(const picture_metadata& metadata) {
    std::string text = shortened_text_of(metadata.exif, EXIFTAG_DATETIMEORIGINAL);
    if (text.empty())
        text = metadata.date_time;
    if (!is_date_time(text))
        return {};
    std::replace(text.begin(), text.begin() + 10, ':', '-');
    return text;
}

void add_geometry(picture_facts& facts, const libraw_data_t& data) {
    constexpr std::array<unsigned, 8> orientations = {1, 2, 4, 3, 5, 8, 6, 7};
    const auto flip = static_cast<unsigned>(data.sizes.flip) % orientations.size();
    const mosaic_area frame = find_camera_frame(data);
    facts.orientation = orientations[flip];
    facts.width = frame.width;
    facts.height = frame.height;
    if ((flip & columns_become_rows) != 0)
        std::swap(facts.width, facts.height);
}

void add_white_balance(picture_facts& facts, const libraw_colordata_t& color) {
    const auto [red, green, blue, second_green] = color.cam_mul;
    if (red > 0 && green > 0 && blue > 0)
        facts.white_balance = {double{red} / green, 1, double{blue} / green};
}

} // namespace

picture_facts collect_facts(const libraw_data_t& data, const picture_metadata& metadata) {
    picture_facts facts;
    facts.camera = metadata.model.substr(0, most_text);
    facts.lens = shortened_text_of(metadata.exif, EXIFTAG_LENSMODEL);
    facts.date_time = date_time_of(metadata);
    facts.exposure_seconds = rational_of(metadata.exif, EXIFTAG_EXPOSURETIME);
    facts.aperture = rational_of(metadata.exif, EXIFTAG_FNUMBER);
    facts.focal_length = rational_of(metadata.exif, EXIFTAG_FOCALLENGTH);
    facts.iso = short_of(metadata.exif, EXIFTAG_ISOSPEEDRATINGS);
    add_geometry(facts, data);
    add_white_balance(facts, data.color);
    return facts;
}

} // namespace sdk_open
