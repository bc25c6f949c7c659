#include "sdk/open/metadata/picture_metadata.h"

#include "sdk/open/identifying/raw_format.h"
#include "sdk/open/metadata/cr2_metadata.h"
#include "sdk/open/metadata/decoder_metadata.h"

#include <tiff.h>
#include <utility>

namespace sdk_open {
namespace {

void fill_in(std::string& text, std::string&& other) {
    if (text.empty())
        text = std::move(other);
}

// What the file says of itself comes first, what the decoder makes of it fills the gaps. Not of the times,
// which pass through the decoder's idea of the local zone, and not of the artist, for whom it takes the
// camera's owner.
picture_metadata completed(picture_metadata found, picture_metadata known) {
    fill_in(found.make, std::move(known.make));
    fill_in(found.model, std::move(known.model));
    for (metadata_field& field : known.exif) {
        const bool is_time = field.tag == EXIFTAG_DATETIMEORIGINAL || field.tag == EXIFTAG_DATETIMEDIGITIZED;
        if (!is_time && find_field(found.exif, field.tag) == nullptr)
            found.exif.push_back(std::move(field));
    }
    return found;
}

} // namespace

picture_metadata collect_metadata(std::span<const std::byte> bytes, const libraw_data_t& decoded) {
    picture_metadata known = read_decoder_metadata(decoded);
    if (recognise_raw_format(bytes) == raw_format_t::crw)
        return known;
    return completed(read_cr2_metadata(bytes), std::move(known));
}

} // namespace sdk_open
