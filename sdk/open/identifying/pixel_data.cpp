#include "sdk/open/identifying/pixel_data.h"

#include "sdk/open/failure.h"
#include "sdk/open/identifying/ciff_heap.h"
#include "sdk/open/identifying/left_to_libraw.h"
#include "sdk/open/identifying/picture_size.h"
#include "sdk/open/identifying/raw_format.h"
#include "sdk/open/identifying/stored_jpeg.h"

#include <cstdint>

namespace sdk_open {
namespace {

constexpr std::uint64_t most_crw_samples = 32'000'000; // three times what the last of these cameras made

// The readout of the EOS-1D Mark III, which alone is so wide, starts two samples before the first row.
unsigned lead_of(unsigned width) noexcept {
    return width == 3984 ? 2 : 0;
}

cr2_mosaic find_in_cr2(std::span<const std::byte> bytes, LibRaw& identified) {
    constexpr std::uint64_t samples_per_byte = 8; // the shortest code takes a bit
    check_size(identified.imgdata.sizes, most_samples, bytes.size(), samples_per_byte);
    const unpacker_data_t& found = identified.get_internal_data_pointer()->unpacker_data;
    if (decoder_name(identified) != "lossless_jpeg_load_raw()")
        throw_no_raw_picture();
    return {read_stored_jpeg(bytes, identified, sampling_t::even),
            {found.cr2_slice[0], found.cr2_slice[1], found.cr2_slice[2]},
            lead_of(identified.imgdata.sizes.raw_width)};
}

crw_mosaic find_in_crw(std::span<const std::byte> bytes, LibRaw& identified) {
    constexpr std::uint64_t samples_per_byte = 128; // a block of 64 takes at least four bits
    check_size(identified.imgdata.sizes, most_crw_samples, bytes.size(), samples_per_byte);
    if (decoder_name(identified) != "canon_load_raw()")
        throw_unknown_storage();
    const auto record = find_ciff_raw_data(bytes);
    if (!record)
        throw_no_raw_picture();
    return read_crw_mosaic(bytes.subspan(record->first, record->end - record->first),
                           identified.get_internal_data_pointer()->unpacker_data.tiff_compress,
                           sample_count(identified.imgdata.sizes));
}

} // namespace

pixel_data::stored_mosaic pixel_data::find(std::span<const std::byte> bytes, LibRaw& identified) {
    if (recognise_raw_format(bytes) == raw_format_t::cr2)
        return find_in_cr2(bytes, identified);
    return find_in_crw(bytes, identified);
}

pixel_data::pixel_data(std::span<const std::byte> bytes, LibRaw& identified)
    : m_stored(find(bytes, identified)) {
    if (identified.imgdata.idata.filters == 0)
        throw failure(error_code_t::not_supported, "the raw picture is no mosaic of colours");
    check_borders(identified.imgdata.sizes);
}

unsigned pixel_data::inq_precision() const {
    return std::visit([](const auto& stored) { return stored.inq_precision(); }, m_stored);
}

unsigned pixel_data::inq_first_column_of_last_slice() const {
    const auto* const stored = std::get_if<cr2_mosaic>(&m_stored);
    return stored != nullptr ? stored->slices.count * stored->slices.width : 0;
}

void pixel_data::decode(const mosaic_buffer& target, unsigned workers, const rows_listener& on_rows) const {
    std::visit([&](const auto& stored) { decode_mosaic(stored, target, workers, on_rows); }, m_stored);
}

} // namespace sdk_open
