#pragma once

#include "sdk/open/colour_smoothing.h"
#include "sdk/open/raw_decoder.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace sdk_open {

// The finished picture: upright, the camera's own frame, 16 bits of sRGB for each of three channels. Its
// pixels stay with the decoder that it was made from and get their colours as they are fetched.
class developed_picture final {
public:
    static constexpr unsigned channels = 3;

    // Develops: white balance as shot, demosaicing, no automatic brightening, clipped highlights neutral. The
    // decoder must outlive the picture. Throws failure, or std::bad_alloc.
    explicit developed_picture(raw_decoder& decoder);

    // In pixels.
    [[nodiscard]] unsigned inq_width() const noexcept { return m_width; }
    [[nodiscard]] unsigned inq_height() const noexcept { return m_height; }

    // Fills channels * inq_width() values with the red, green and blue of a row counted from the top.
    void fetch_row(unsigned row, std::span<std::uint16_t> target) const noexcept;

private:
    void place_frame(const raw_decoder& decoder, const libraw_image_sizes_t& developed);

    const camera_pixel* m_first = nullptr; // what becomes the upper left pixel
    std::ptrdiff_t m_step_right = 0;       // in pixels of the decoder's picture
    std::ptrdiff_t m_step_down = 0;
    unsigned m_width = 0;
    unsigned m_height = 0;
    std::array<std::array<float, channels>, channels> m_srgb_from_camera{};
    std::vector<std::uint16_t> m_curve;
};

} // namespace sdk_open
