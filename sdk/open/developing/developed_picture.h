#pragma once

#include "sdk/open/developing/development.h"
#include "sdk/open/developing/finished_picture.h"
#include "sdk/open/developing/stripe_developer.h"

namespace sdk_open {

// The picture of a mosaic of red, green and blue. It is decoded and made, band after band, when it is wanted.
class developed_picture final : public finished_picture {
public:
    // The decoder must outlive the picture. Throws failure where the camera's colours are unknown, or are not
    // red, green and blue, and std::bad_alloc.
    explicit developed_picture(raw_decoder& decoder);

    [[nodiscard]] unsigned inq_width() const noexcept override { return m_width; }
    [[nodiscard]] unsigned inq_height() const noexcept override { return m_height; }

    void develop(unsigned workers, unsigned rows_per_piece, const rows_task& prepare,
                 const rows_task& take) override;

private:
    class band_maker;

    [[nodiscard]] unsigned bands_within(unsigned mosaic_rows, unsigned band_rows) const noexcept;

    raw_decoder& m_decoder;
    development m_development;
    mosaic_area m_frame;
    unsigned m_flip; // bits of flip_t
    unsigned m_width;
    unsigned m_height;
};

} // namespace sdk_open
