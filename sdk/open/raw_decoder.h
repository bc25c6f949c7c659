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

    // What LibRaw knows of the picture.
    [[nodiscard]] const libraw_data_t& inq_data() const noexcept { return m_libraw->imgdata; }

private:
    std::unique_ptr<own_decoder_libraw> m_libraw;
};

} // namespace sdk_open
