#include "sdk/open/developed_picture.h"

#include "sdk/open/camera_frame.h"
#include "sdk/open/colour_smoothing.h"
#include "sdk/open/failure.h"
#include "sdk/open/srgb.h"

#include <algorithm>
#include <utility>

namespace sdk_open {
namespace {

std::uint16_t clipped(float value) noexcept {
    return static_cast<std::uint16_t>(std::clamp(value + 0.5F, 0.0F, 65535.0F));
}

} // namespace

developed_picture::developed_picture(raw_decoder& decoder) {
    if (!decoder.knows_colours() || decoder.inq_data().rawdata.iparams.colors != channels)
        throw failure(error_code_t::not_supported, "the colours of this camera model are not known");
    decoder.develop(find_lit_area(decoder.inq_data()));
    const libraw_data_t& data = decoder.inq_data();
    smooth_colours(data.image, data.sizes.width, data.sizes.height);
    place_frame(decoder, data.sizes);
    for (unsigned out = 0; out < channels; ++out)
        std::copy_n(data.color.rgb_cam[out], channels, m_srgb_from_camera[out].begin());
    m_curve = make_srgb_curve();
}

// The decoder leaves its picture as the sensor saw it and says in three bits how to turn it: 4 swaps columns
// and rows, then 2 turns it upside down and 1 mirrors it.
void developed_picture::place_frame(const raw_decoder& decoder, const libraw_image_sizes_t& developed) {
    const mosaic_area frame = find_camera_frame(decoder.inq_data());
    const auto flip = static_cast<unsigned>(developed.flip);
    const std::ptrdiff_t pitch = developed.width;
    std::ptrdiff_t column = static_cast<std::ptrdiff_t>(frame.left) - developed.left_margin;
    std::ptrdiff_t row = static_cast<std::ptrdiff_t>(frame.top) - developed.top_margin;
    m_step_right = 1;
    m_step_down = pitch;
    if ((flip & 1U) != 0) {
        column += static_cast<std::ptrdiff_t>(frame.width) - 1;
        m_step_right = -m_step_right;
    }
    if ((flip & 2U) != 0) {
        row += static_cast<std::ptrdiff_t>(frame.height) - 1;
        m_step_down = -m_step_down;
    }
    m_width = frame.width;
    m_height = frame.height;
    if ((flip & 4U) != 0) {
        std::swap(m_step_right, m_step_down);
        std::swap(m_width, m_height);
    }
    m_first = decoder.inq_data().image + row * pitch + column;
}

void developed_picture::fetch_row(unsigned row, std::span<std::uint16_t> target) const noexcept {
    const camera_pixel* pixel = m_first + static_cast<std::ptrdiff_t>(row) * m_step_down;
    for (std::size_t at = 0; at + channels <= target.size(); at += channels, pixel += m_step_right)
        for (unsigned out = 0; out < channels; ++out) {
            const auto& weights = m_srgb_from_camera[out];
            const float linear = weights[0] * static_cast<float>((*pixel)[0]) +
                                 weights[1] * static_cast<float>((*pixel)[1]) +
                                 weights[2] * static_cast<float>((*pixel)[2]);
            target[at + out] = m_curve[clipped(linear)];
        }
}

} // namespace sdk_open
