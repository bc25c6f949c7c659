#include "sdk/open/identifying/raw_decoder.h"

#include "sdk/open/failure.h"
#include "sdk/open/identifying/canon_directories.h"
#include "sdk/open/identifying/left_to_libraw.h"
#include "sdk/open/identifying/raw_format.h"
#include "sdk/open/system/large_block.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <string_view>
#include <vector>

namespace sdk_open {
namespace {

constexpr unsigned most_raw_memory = 1024; // MiB

void check(int libraw_answer) {
    switch (libraw_answer) {
    case LIBRAW_SUCCESS:
        return;
    case LIBRAW_UNSUFFICIENT_MEMORY:
        throw std::bad_alloc();
    case LIBRAW_FILE_UNSUPPORTED:
    case LIBRAW_REQUEST_FOR_NONEXISTENT_IMAGE:
    case LIBRAW_OUT_OF_ORDER_CALL: // what decoding answers where no picture was identified
        throw_no_raw_picture();
    case LIBRAW_TOO_BIG:
        throw failure(error_code_t::not_supported, "the raw picture is too large");
    case LIBRAW_IO_ERROR:
        throw_damaged("the file ends early or its structure is damaged");
    default:
        throw_damaged("the pixel data are damaged");
    }
}

// LibRaw's constructor does not look whether it gets the little memory that it asks for, and would fall over
// what is missing: there has to be some. A block that is given back stays with the process.
std::unique_ptr<own_decoder_libraw> make_libraw() {
    constexpr std::size_t more_than_it_asks_for = 64 << 10; // bytes
    static_cast<void>(large_block(more_than_it_asks_for));
    return std::make_unique<own_decoder_libraw>(LIBRAW_OPIONS_NO_MEMERR_CALLBACK |
                                                LIBRAW_OPIONS_NO_DATAERR_CALLBACK);
}

// The decoder's white level is a fixed one for each camera model. The camera itself records the level that
// holds for this picture (it varies with the sensitivity), and no sample is above what its bits can hold.
void correct_white_level(libraw_colordata_t& color, unsigned precision) {
    color.maximum = std::min(color.maximum, (1U << precision) - 1);
    const long recorded = *std::min_element(std::begin(color.linear_max), std::end(color.linear_max));
    if (recorded > static_cast<long>(color.maximum / 2) && recorded < static_cast<long>(color.maximum))
        color.maximum = static_cast<unsigned>(recorded);
}

// LibRaw looks for the marks of another maker all over the file's first bytes.
void refuse_foreign_marks(std::span<const std::byte> bytes) {
    constexpr std::size_t looked_at = 32;
    const auto first = bytes.first(std::min(bytes.size(), looked_at));
    for (const std::string_view mark : {"IIII", "MMMM"}) {
        const auto units = std::as_bytes(std::span(mark));
        if (std::search(first.begin(), first.end(), units.begin(), units.end()) != first.end())
            throw_no_raw_picture();
    }
}

// The other format knows Canon's records only.
std::vector<std::size_t> find_hidden_tags(std::span<const std::byte> bytes) {
    const raw_format_t format = recognise_raw_format(bytes);
    refuse_foreign_marks(bytes);
    if (format == raw_format_t::cr2)
        return find_foreign_entries(bytes);
    return {};
}

} // namespace

raw_decoder::raw_decoder(std::span<const std::byte> bytes)
    : m_stream(bytes, find_hidden_tags(bytes)), m_libraw(make_libraw()) {
    m_libraw->imgdata.params.max_raw_memory_mb = most_raw_memory;
    check(m_libraw->open_datastream(&m_stream));
    m_stream.lift_limits();
    m_is_packed = is_left_to_libraw(*m_libraw);
    if (m_is_packed)
        check_packed(*m_libraw, bytes);
    else
        m_stored = std::make_unique<pixel_data>(bytes, *m_libraw);
}

void raw_decoder::decode(unsigned workers, const rows_listener& on_rows) {
    if (m_stored != nullptr) {
        check(m_libraw->unpack_with(
            [&](const mosaic_buffer& target) { decode_into(target, workers, on_rows); }));
        correct_white_level(m_libraw->imgdata.color, m_stored->inq_precision());
        m_stored.reset();
    }
    on_rows(inq_mosaic().height);
}

// Rows are worth nothing without the black level. Where LibRaw can learn it from masked borders that are
// complete, because they lie in slices before the last one, the rest need not be waited for.
void raw_decoder::decode_into(const mosaic_buffer& target, unsigned workers, const rows_listener& on_rows) {
    bool knows_levels = false;
    m_stored->decode(target, workers, [&](unsigned rows) {
        if (rows == 0 || rows == target.height)
            return;
        if (!knows_levels) {
            if (!m_libraw->learn_levels_left_of(m_stored->inq_first_column_of_last_slice()))
                return;
            correct_white_level(m_libraw->imgdata.color, m_stored->inq_precision());
            knows_levels = true;
        }
        on_rows(rows);
    });
}

void raw_decoder::require_colours() const {
    if (m_libraw->get_internal_data_pointer()->internal_output_params.raw_color != 0)
        throw failure(error_code_t::not_supported, "the colours of this camera model are not known");
}

own_decoder_libraw& raw_decoder::decode_whole() {
    if (m_is_packed)
        unpack();
    else
        decode(1, [](unsigned) {});
    return *m_libraw;
}

// LibRaw counts most of the damage that it notices and goes on.
void raw_decoder::unpack() {
    check(m_libraw->unpack_by_libraw());
    if (m_libraw->error_count() != 0)
        throw_damaged("the pixel data are damaged");
    check_unpacked(*m_libraw, m_stream);
    m_is_packed = false;
}

mosaic_view raw_decoder::inq_mosaic() const noexcept {
    const auto& sizes = inq_data().sizes;
    const std::size_t count = std::size_t{sizes.raw_width} * sizes.raw_height;
    return {{inq_data().rawdata.raw_image, count}, sizes.raw_width, sizes.raw_height};
}

} // namespace sdk_open
