#include "sdk/open/pixel_data_check.h"

#include "sdk/open/ciff_heap.h"
#include "sdk/open/failure.h"
#include "sdk/open/lossless_jpeg.h"

#include <string_view>

namespace sdk_open {
namespace {

constexpr std::uint64_t most_crw_samples = 32'000'000; // three times what the last of these cameras made

[[noreturn]] void throw_no_picture() {
    throw failure(error_code_t::not_a_raw_picture, "no Canon raw picture in it");
}

// The decoder of a .crw fetches a few bytes ahead of the bits it needs, and the camera may add a marker and
// fill up after them.
bool ends_near(std::size_t stop, std::size_t end) noexcept {
    constexpr std::size_t padding = 4;
    constexpr std::size_t read_ahead = 2;
    return stop + padding >= end && stop <= end + read_ahead;
}

} // namespace

pixel_data_check::pixel_data_check(std::span<const std::byte> bytes, LibRaw& libraw)
    : m_bytes(bytes), m_libraw(libraw), m_format(recognise_raw_format(bytes)) {}

const unpacker_data_t& pixel_data_check::unpacker() const noexcept {
    return m_libraw.get_internal_data_pointer()->unpacker_data;
}

std::uint64_t pixel_data_check::sample_count() const noexcept {
    return std::uint64_t{sizes().raw_width} * sizes().raw_height;
}

void pixel_data_check::before_decoding() {
    check_size();
    switch (m_format) {
    case raw_format_t::cr2:
        check_cr2();
        return;
    case raw_format_t::crw:
        check_crw();
        return;
    }
}

void pixel_data_check::after_decoding(std::size_t stop) const {
    const bool ends_well =
        m_format == raw_format_t::cr2 ? ends_at(m_bytes, stop) : ends_near(stop, m_raw_data_end);
    if (!ends_well)
        throw_damaged("the pixel data do not end where they should");
}

void pixel_data_check::check_size() const {
    const bool is_cr2 = m_format == raw_format_t::cr2;
    if (sample_count() > (is_cr2 ? most_samples : most_crw_samples))
        throw failure(error_code_t::not_supported, "the raw picture has more pixels than any camera makes");
    // The shortest code of a .cr2 takes a bit, and a block of 64 samples of a .crw four bits.
    const std::uint64_t samples_per_byte = is_cr2 ? 8 : 128;
    if (sample_count() > m_bytes.size() * samples_per_byte)
        throw_damaged("the pixel data end early");
}

bool pixel_data_check::decodes_with(const char* name) const {
    libraw_decoder_info_t decoder{};
    return m_libraw.get_decoder_info(&decoder) == LIBRAW_SUCCESS && decoder.decoder_name != nullptr &&
           std::string_view(decoder.decoder_name) == name;
}

void pixel_data_check::check_cr2() {
    if (decodes_with("canon_sraw_load_raw()"))
        throw failure(error_code_t::not_supported, "raw pictures of reduced resolution are not supported");
    if (!decodes_with("lossless_jpeg_load_raw()") || unpacker().data_offset < 0)
        throw_no_picture();
    const auto offset = static_cast<std::uint64_t>(unpacker().data_offset);
    if (offset >= m_bytes.size())
        throw_damaged("the pixel data end early");
    const lossless_jpeg jpeg = read_lossless_jpeg(m_bytes.subspan(static_cast<std::size_t>(offset)));
    if (jpeg.inq_sample_count() != sample_count())
        throw_damaged("the pixel data have another size than the picture");
    check_slices();
    m_precision = jpeg.precision;
}

// The mosaic is cut into columns: slices[0] of slices[1] samples each and a last one of slices[2].
void pixel_data_check::check_slices() const {
    const auto& slices = unpacker().cr2_slice;
    if (slices[0] == 0)
        return;
    const std::uint64_t width = std::uint64_t{slices[0]} * slices[1] + slices[2];
    if (slices[1] == 0 || slices[2] == 0 || width != sizes().raw_width)
        throw_damaged("the pixel data are cut into impossible slices");
}

// The mosaic is coded in strips of eight rows, and those in blocks of 64 samples.
void pixel_data_check::check_crw() {
    if (!decodes_with("canon_load_raw()"))
        throw failure(error_code_t::not_supported, "the raw picture is stored in an unknown way");
    const auto raw_data = find_ciff_raw_data(m_bytes);
    if (!raw_data)
        throw_no_picture();
    constexpr unsigned rows_at_once = 8;
    constexpr unsigned block = 64;
    const unsigned last_rows = sizes().raw_height % rows_at_once;
    if (sizes().raw_width % rows_at_once != 0 || last_rows * sizes().raw_width % block != 0)
        throw_damaged("the picture has an impossible size");
    m_raw_data_end = raw_data->end;
}

} // namespace sdk_open
