#include "sdk/open/developing/libraw_picture.h"

#include "sdk/open/developing/light_range.h"
#include "sdk/open/developing/srgb.h"
#include "sdk/open/failure.h"
#include "sdk/open/identifying/flip.h"
#include "sdk/open/identifying/picture_size.h"

#include <algorithm>
#include <libraw/libraw.h>
#include <new>
#include <utility>

namespace sdk_open {
namespace {

// Pixels of a picture that LibRaw develops, which holds all of them at once, 16 bytes for each. No camera
// with four colours or reduced resolution comes near.
constexpr std::uint64_t most_pixels = 64'000'000;

void check_size(const libraw_image_sizes_t& sizes) {
    if (sample_count(sizes) > most_pixels)
        throw failure(error_code_t::not_supported,
                      "the raw picture has more pixels than any such camera makes");
}

// Without a balance of the camera's own that for daylight is taken, which LibRaw has for each model. Where
// there is anything to demosaic, it is by the best of LibRaw's ways that do for four colours and take no
// threads.
void set_parameters(libraw_output_params_t& parameters, const libraw_colordata_t& color) {
    parameters.use_camera_wb = is_balance_recorded(color) ? 1 : 0;
    parameters.adjust_maximum_thr = 0; // or pictures without highlights would become brighter
    constexpr int variable_number_of_gradients = 1;
    parameters.user_qual = variable_number_of_gradients;
}

// LibRaw begins its work with what it knew when the picture was decoded, and takes what it then held to be
// visible. It is told of the white level and of the area that we have found since.
void set_levels_and_area(libraw_data_t& data, const mosaic_area& lit) {
    libraw_rawdata_t& decoded = data.rawdata;
    decoded.color = data.color;
    decoded.iparams.filters = find_lit_filters(data, lit);
    decoded.sizes.left_margin = static_cast<std::uint16_t>(lit.left);
    decoded.sizes.top_margin = static_cast<std::uint16_t>(lit.top);
    decoded.sizes.width = static_cast<std::uint16_t>(lit.width);
    decoded.sizes.height = static_cast<std::uint16_t>(lit.height);
    decoded.sizes.pixel_aspect = 1; // as they are: stretched, the frame would hold no longer
}

// Has LibRaw turn what is decoded into linear light of sRGB. Then it is to tell of the raw picture again.
void process(own_decoder_libraw& libraw) {
    const int answer = libraw.develop();
    libraw.raw2image_start();
    switch (answer) {
    case LIBRAW_SUCCESS:
        return;
    case LIBRAW_UNSUFFICIENT_MEMORY:
        throw std::bad_alloc();
    default:
        throw_damaged("the picture cannot be developed");
    }
}

} // namespace

libraw_picture::libraw_picture(raw_decoder& decoder)
    : m_data(decoder.inq_data()), m_curve(make_srgb_curve()) {
    check_size(m_data.sizes);
    decoder.require_colours();
    own_decoder_libraw& libraw = decoder.decode_whole();
    static_cast<void>(light_range(m_data.color)); // LibRaw would make noise of levels that cannot be
    const mosaic_area frame = find_camera_frame(m_data);
    const mosaic_area lit = find_lit_area(m_data);
    set_parameters(libraw.imgdata.params, m_data.color);
    set_levels_and_area(libraw.imgdata, lit);
    process(libraw);
    place({frame.left - lit.left, frame.top - lit.top, frame.width, frame.height}, lit.width);
}

// The frame is an area of LibRaw's image, whose rows are pitch pixels apart.
void libraw_picture::place(const mosaic_area& frame, unsigned pitch) noexcept {
    const auto flip = static_cast<unsigned>(m_data.sizes.flip);
    const bool is_mirrored = (flip & mirrored) != 0;
    const bool is_upside_down = (flip & upside_down) != 0;
    const unsigned column = is_mirrored ? frame.inq_right() - 1 : frame.left;
    const unsigned row = is_upside_down ? frame.inq_bottom() - 1 : frame.top;
    m_first = std::ptrdiff_t{row} * pitch + column;
    m_step_right = is_mirrored ? -1 : 1;
    m_step_down = is_upside_down ? -std::ptrdiff_t{pitch} : std::ptrdiff_t{pitch};
    m_width = frame.width;
    m_height = frame.height;
    if ((flip & columns_become_rows) != 0) {
        std::swap(m_step_right, m_step_down);
        std::swap(m_width, m_height);
    }
}

// LibRaw has done the work already.
void libraw_picture::develop(unsigned, unsigned rows_per_piece, const rows_task& prepare,
                             const rows_task& take) {
    const std::size_t row_length = std::size_t{m_width} * channels;
    std::vector<std::uint16_t> values(row_length * std::min(rows_per_piece, m_height));
    for (unsigned top = 0; top < m_height; top += rows_per_piece) {
        const unsigned rows = std::min(rows_per_piece, m_height - top);
        const auto piece = std::span(values).first(row_length * rows);
        for (unsigned row = 0; row < rows; ++row)
            make_row(top + row, piece.subspan(row_length * row, row_length));
        prepare(0, piece);
        take(0, piece);
    }
}

void libraw_picture::make_row(unsigned row, std::span<std::uint16_t> values) const noexcept {
    std::ptrdiff_t at = m_first + row * m_step_down;
    for (; !values.empty(); values = values.subspan(channels), at += m_step_right)
        for (std::size_t channel = 0; channel < channels; ++channel)
            values[channel] = m_curve[m_data.image[at][channel]];
}

} // namespace sdk_open
