#include "sdk/open/identifying/own_decoder_libraw.h"

#include "sdk/open/system/system_calls.h"

#include <algorithm>
#include <cstddef>
#include <new>
#include <span>
#include <utility>

namespace sdk_open {

int own_decoder_libraw::unpack_with(decoder decode) {
    m_decode = std::move(decode);
    m_own_load = std::exchange(load_raw, static_cast<load_function>(&own_decoder_libraw::load_mosaic));
    const int answer = unpack();
    if (m_problem)
        std::rethrow_exception(std::exchange(m_problem, nullptr));
    return answer;
}

// What LibRaw learns from rows that are not there yet may stay, so it is asked only where it will not look at
// any.
bool own_decoder_libraw::learns_levels_left_of(unsigned column) {
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
    load_raw = m_own_load;
    try {
        decode_mosaic();
    } catch (...) {
        // LibRaw is not told: it would give back the mosaic, which other threads may be reading.
        m_problem = std::current_exception();
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

} // namespace sdk_open
