#pragma once

#include "sdk/open/developing/development.h"
#include "sdk/open/developing/stripe_developer.h"

#include <cstdint>
#include <functional>
#include <span>

namespace sdk_open {

// The finished picture: upright, the camera's own frame, 16 bits of sRGB for each of three channels. It is
// made band after band, as it is wanted.
class developed_picture final {
public:
    static constexpr unsigned channels = 3;

    // What becomes of the values of some rows, whose memory it may use. It is told which worker calls, from
    // 0.
    using rows_task = std::function<void(unsigned worker, std::span<std::uint16_t> values)>;

    // The decoder must outlive the picture. Throws failure where the camera's colours are not known, and
    // std::bad_alloc.
    explicit developed_picture(raw_decoder& decoder);

    // In pixels.
    [[nodiscard]] unsigned inq_width() const noexcept { return m_width; }
    [[nodiscard]] unsigned inq_height() const noexcept { return m_height; }

    // Decodes and develops with at most so many threads, the calling one included, and hands the picture on
    // in pieces of a multiple of rows_per_piece rows; the last piece may be shorter. Each piece is prepared
    // by one of the workers while others prepare theirs, and then taken by the same one: one at a time, from
    // the top down. The values do not depend on the number of threads. Throws failure where the pixel data
    // are damaged, std::bad_alloc, and what the tasks throw.
    void develop(unsigned workers, unsigned rows_per_piece, const rows_task& prepare, const rows_task& take);

private:
    class band_maker;

    [[nodiscard]] unsigned bands_within(unsigned mosaic_rows, unsigned band_rows) const noexcept;

    raw_decoder& m_decoder;
    development m_development;
    mosaic_area m_frame;
    unsigned m_flip; // three bits: 4 swaps columns and rows, then 2 turns upside down and 1 mirrors
    unsigned m_width;
    unsigned m_height;
};

} // namespace sdk_open
