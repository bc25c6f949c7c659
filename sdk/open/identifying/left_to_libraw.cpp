#include "sdk/open/identifying/left_to_libraw.h"

#include "sdk/open/decoding/mosaic_buffer.h"
#include "sdk/open/failure.h"
#include "sdk/open/identifying/picture_size.h"
#include "sdk/open/identifying/stored_jpeg.h"

#include <array>
#include <cstdio>

namespace sdk_open {
namespace {

constexpr std::string_view reduced_decoder = "canon_sraw_load_raw()";
constexpr std::string_view plain_decoder = "canon_600_load_raw()";

// LibRaw divides by the JPEG's width, believes the lengths of its code tables, goes through all rows for each
// slice, and writes to where only pictures without filters have memory.
void check_reduced(LibRaw& identified, std::span<const std::byte> bytes) {
    constexpr unsigned most_slices = 64; // cameras make a few
    const libraw_data_t& data = identified.imgdata;
    if (data.idata.filters != 0 || data.idata.colors != 3)
        throw_unknown_storage();
    if (data.sizes.height % 2 != 0 || // LibRaw writes two rows at a time
        identified.get_internal_data_pointer()->unpacker_data.cr2_slice[0] > most_slices)
        throw_damaged("the pixel data have an impossible geometry");
    static_cast<void>(read_stored_jpeg(bytes, identified, sampling_t::reduced));
}

} // namespace

std::string_view decoder_name(LibRaw& identified) {
    libraw_decoder_info_t decoder{};
    if (identified.get_decoder_info(&decoder) != LIBRAW_SUCCESS || decoder.decoder_name == nullptr)
        return {};
    return decoder.decoder_name;
}

bool is_left_to_libraw(LibRaw& identified) {
    const std::string_view name = decoder_name(identified);
    return name == reduced_decoder || name == plain_decoder;
}

void check_packed(LibRaw& identified, std::span<const std::byte> bytes) {
    const libraw_image_sizes_t& sizes = identified.imgdata.sizes;
    const bool is_reduced = decoder_name(identified) == reduced_decoder;
    check_size(sizes, most_samples, bytes.size(), is_reduced ? 8 : 1); // a code takes a bit or more
    check_borders(sizes);
    if (is_reduced)
        check_reduced(identified, bytes);
}

void check_unpacked(LibRaw& unpacked, LibRaw_abstract_datastream& stream) {
    if (decoder_name(unpacked) != reduced_decoder)
        return;
    constexpr std::string_view end_of_image = "\xff\xd9";
    constexpr int read_ahead = 2; // at most, to see whole codes
    std::array<char, 8> around{};
    stream.seek(-read_ahead, SEEK_CUR);
    const int n_bytes = stream.read(around.data(), 1, around.size());
    const std::string_view bytes(around.data(), n_bytes > 0 ? static_cast<std::size_t>(n_bytes) : 0);
    if (bytes.find(end_of_image) == std::string_view::npos)
        throw_damaged("the pixel data do not end where they should");
}

} // namespace sdk_open
