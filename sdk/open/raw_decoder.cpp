#include "sdk/open/raw_decoder.h"

#include "sdk/open/failure.h"
#include "sdk/open/pixel_data.h"
#include "sdk/open/raw_format.h"

#include <algorithm>
#include <iterator>
#include <new>

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
        throw failure(error_code_t::not_a_raw_picture, "no Canon raw picture in it");
    case LIBRAW_TOO_BIG:
        throw failure(error_code_t::not_supported, "the raw picture is too large");
    case LIBRAW_IO_ERROR:
        throw_damaged("the file ends early or its structure is damaged");
    default:
        throw_damaged("the pixel data are damaged");
    }
}

// The decoder's white level is a fixed one for each camera model. The camera itself records the level that
// holds for this picture (it varies with the sensitivity), and no sample is above what its bits can hold.
void correct_white_level(libraw_colordata_t& color, unsigned precision) {
    color.maximum = std::min(color.maximum, (1U << precision) - 1);
    const long recorded = *std::min_element(std::begin(color.linear_max), std::end(color.linear_max));
    if (recorded > static_cast<long>(color.maximum / 2) && recorded < static_cast<long>(color.maximum))
        color.maximum = static_cast<unsigned>(recorded);
}

} // namespace

raw_decoder::raw_decoder(std::span<const std::byte> bytes)
    : m_libraw(std::make_unique<own_decoder_libraw>(LIBRAW_OPIONS_NO_MEMERR_CALLBACK |
                                                    LIBRAW_OPIONS_NO_DATAERR_CALLBACK)) {
    static_cast<void>(recognise_raw_format(bytes));
    m_libraw->imgdata.params.max_raw_memory_mb = most_raw_memory;
    // LibRaw takes the bytes as writable and writes nothing.
    LibRaw_buffer_datastream stream(const_cast<std::byte*>(bytes.data()), bytes.size()); // NOLINT
    check(m_libraw->open_datastream(&stream));
    const pixel_data stored(bytes, *m_libraw);
    check(m_libraw->unpack_with(
        [&stored](const mosaic_buffer& target) { stored.decode(target, [](unsigned) {}); }));
    correct_white_level(m_libraw->imgdata.rawdata.color, stored.inq_precision());
    m_libraw->get_internal_data_pointer()->internal_data.input = nullptr; // the stream ends here
}

mosaic_view raw_decoder::inq_mosaic() const noexcept {
    const auto& rawdata = inq_data().rawdata;
    const std::size_t count = std::size_t{rawdata.sizes.raw_width} * rawdata.sizes.raw_height;
    return {{rawdata.raw_image, count}, rawdata.sizes.raw_width, rawdata.sizes.raw_height};
}

} // namespace sdk_open
