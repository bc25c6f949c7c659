#pragma once

#include "sdk/open/camera_frame.h"
#include "sdk/open/own_decoder_libraw.h"

#include <cstddef>
#include <cstdint>
#include <libraw/libraw.h>
#include <memory>
#include <span>

namespace sdk_open {

// The samples as they come from the sensor, the masked borders included, row by row without gaps.
struct mosaic_view {
    std::span<const std::uint16_t> samples;
    unsigned width;
    unsigned height;
};

// Identifies a raw picture and decodes its mosaic. Everything that is damaged about the pixel data comes out
// in the constructor; afterwards the file's bytes are not needed any more.
class raw_decoder final {
public:
    // Throws failure, or std::bad_alloc.
    explicit raw_decoder(std::span<const std::byte> bytes);

    [[nodiscard]] mosaic_view inq_mosaic() const noexcept;

    // What the decoder knows of the picture and, once it is developed, its pixels in the camera's colours.
    [[nodiscard]] const libraw_data_t& inq_data() const noexcept { return m_libraw->imgdata; }

    // Whether the decoder has the colour matrix of this camera.
    [[nodiscard]] bool knows_colours() const noexcept;

    // Turns an area of the mosaic into a picture in the camera's colours: white balance as shot, demosaicing,
    // no automatic brightening, clipped highlights neutral. No thread outlives it. Throws like the
    // constructor, also where no thread can be started.
    void develop(const mosaic_area& area);

private:
    void choose_area(const mosaic_area& area) noexcept;
    void choose_settings() noexcept;
    void run_development();

    std::unique_ptr<own_decoder_libraw> m_libraw;
};

} // namespace sdk_open
