#pragma once

#include "sdk/open/developing/finished_picture.h"
#include "sdk/open/identifying/camera_frame.h"
#include "sdk/open/identifying/raw_decoder.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace sdk_open {

// A picture as LibRaw makes it, for what our own demosaicing does not understand: sensors with four colours,
// and pictures of reduced resolution, which have all their colours at each pixel. White balance, white level,
// frame, orientation and curve are those of every other picture.
class libraw_picture final : public finished_picture {
public:
    // Decodes and develops all of it. The decoder must outlive the picture, and is good for one at a time.
    // Throws failure where the camera's colours are not known, the picture is too large or its pixel data are
    // damaged, and std::bad_alloc.
    explicit libraw_picture(raw_decoder& decoder);

    [[nodiscard]] unsigned inq_width() const noexcept override { return m_width; }
    [[nodiscard]] unsigned inq_height() const noexcept override { return m_height; }

    void develop(unsigned workers, unsigned rows_per_piece, const rows_task& prepare,
                 const rows_task& take) override;

private:
    void place(const mosaic_area& frame, unsigned pitch) noexcept;
    void make_row(unsigned row, std::span<std::uint16_t> values) const noexcept;

    const libraw_data_t& m_data;        // whose image is the picture in linear light, 0 to 65535
    std::vector<std::uint16_t> m_curve; // from there to the coded value
    std::ptrdiff_t m_first = 0;         // the pixel of the image that becomes the upper left one
    std::ptrdiff_t m_step_right = 1;    // in pixels of the image
    std::ptrdiff_t m_step_down = 0;
    unsigned m_width = 0;
    unsigned m_height = 0;
};

} // namespace sdk_open
