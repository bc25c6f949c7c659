#include "sdk/open/identifying/own_decoder_libraw.h"

#include "sdk/open/identifying/camera_frame.h"
#include "sdk/open/system/system_calls.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <new>
#include <span>
#include <utility>

namespace sdk_open {

int own_decoder_libraw::unpack_with(decoder decode) {
    m_decode = std::move(decode);
    put_in_place_of_libraws(static_cast<load_function>(&own_decoder_libraw::load_mosaic));
    const int answer = unpack();
    if (m_problem)
        std::rethrow_exception(std::exchange(m_problem, nullptr));
    return answer;
}

int own_decoder_libraw::unpack_by_libraw() {
    put_in_place_of_libraws(static_cast<load_function>(&own_decoder_libraw::load_by_libraw));
    return unpack();
}

int own_decoder_libraw::develop() {
    callbacks.pre_subtractblack_cb = require_image;
    return dcraw_process();
}

void own_decoder_libraw::put_in_place_of_libraws(load_function load) noexcept {
    m_libraws_load = std::exchange(load_raw, load);
}

// What LibRaw learns from rows that are not there yet may stay, so it is asked only where it will not look at
// any.
bool own_decoder_libraw::learn_levels_left_of(unsigned column) {
    if (!has_borders_only_left_of(column))
        return false;
    crop_masked_pixels();
    return true;
}

// The masked borders are either recorded or, for LibRaw, all columns beside the picture but for two at either
// side of it.
bool own_decoder_libraw::has_borders_only_left_of(unsigned column) const noexcept {
    constexpr int passed_over = 2;
    const libraw_image_sizes_t& sizes = imgdata.sizes;
    const bool are_recorded = sizes.mask[0][3] > 0;
    if (!are_recorded &&
        (sizes.left_margin > column || sizes.left_margin + sizes.width + passed_over < sizes.raw_width))
        return false;
    return std::ranges::all_of(sizes.mask, [column](const auto& border) {
        const auto [top, left, bottom, right] = border;
        return top >= bottom || left >= right || right <= static_cast<int>(column);
    });
}

// LibRaw calls this in place of a decoder of its own; which one that was tells it later where the mosaic's
// masked borders lie.
void own_decoder_libraw::load_mosaic() {
    load_raw = m_libraws_load;
    try {
        decode_mosaic();
    } catch (...) {
        // LibRaw is not told: it would give back the mosaic, which other threads may be reading.
        m_problem = std::current_exception();
    }
}

void own_decoder_libraw::load_by_libraw() {
    load_raw = m_libraws_load;
    try {
        std::invoke(m_libraws_load, *this);
    } catch (const std::bad_alloc&) {
        throw LibRaw_exceptions{LIBRAW_EXCEPTION_ALLOC};
    }
}

void own_decoder_libraw::decode_mosaic() const {
    const libraw_image_sizes_t& sizes = imgdata.sizes;
    if (imgdata.rawdata.raw_image == nullptr)
        throw std::bad_alloc();
    const std::size_t count = std::size_t{sizes.raw_width} * sizes.raw_height;
    const std::span samples(imgdata.rawdata.raw_image, count);
    system_calls::prefer_large_pages(std::as_writable_bytes(samples));
    m_decode({samples, sizes.raw_width, sizes.raw_height});
}

// LibRaw calls this after the step whose answer it does not look at, which copies what was decoded to where
// it is developed. That fails for lack of memory only.
void own_decoder_libraw::require_image(void* libraw) {
    if (static_cast<LibRaw*>(libraw)->imgdata.image == nullptr)
        throw LibRaw_exceptions{LIBRAW_EXCEPTION_ALLOC};
}

// LibRaw's own one takes threads of OpenMP, which ends the process where there are none, or no memory for
// them. They would stay behind, too.
void own_decoder_libraw::copy_bayer(unsigned short* black, unsigned short* highest) {
    const libraw_image_sizes_t& sizes = imgdata.sizes;
    const std::size_t pitch = sizes.raw_pitch / sizeof(std::uint16_t);
    const std::uint16_t* const first =
        imgdata.rawdata.raw_image + sizes.top_margin * pitch + sizes.left_margin;
    for (unsigned row = 0; row < sizes.height; ++row) {
        const std::span samples(first + row * pitch, sizes.width);
        const std::span pixels(imgdata.image + std::size_t{row} * sizes.iwidth, sizes.width);
        for (unsigned column = 0; column < sizes.width; ++column) {
            const unsigned colour = filter_at(imgdata.idata.filters, column, row);
            const std::uint16_t sample = samples[column];
            const auto light = static_cast<std::uint16_t>(sample - std::min(sample, black[colour]));
            pixels[column][colour] = light;
            *highest = std::max(*highest, light);
        }
    }
}

} // namespace sdk_open
