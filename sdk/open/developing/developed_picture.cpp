#include "sdk/open/developing/developed_picture.h"

#include "sdk/open/developing/band_team.h"
#include "sdk/open/identifying/flip.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace sdk_open {
namespace {

// Of a picture's rows, as many as make it worth while to start a stripe anew for them.
constexpr unsigned rows_of_a_band = 128;

} // namespace

// What one worker needs to make bands.
class developed_picture::band_maker final {
public:
    band_maker(const developed_picture& picture, unsigned band_rows)
        : m_picture(picture),
          m_band_rows(band_rows),
          m_developer(picture.m_development),
          m_values(std::make_unique_for_overwrite<std::uint16_t[]>(std::size_t{band_rows} * picture.m_width *
                                                                   channels)) {}

    void make(unsigned band) {
        const unsigned top = band * m_band_rows;
        m_rows = std::min(m_band_rows, m_picture.m_height - top);
        const mosaic_area area = area_of(top);
        const auto [first, step_right, step_down] = target_of(area);
        for (unsigned left = 0; left < area.width; left += stripe_developer::most_columns)
            m_developer.develop(
                {area.left + left, area.top, std::min(stripe_developer::most_columns, area.width - left),
                 area.height},
                {first + static_cast<std::ptrdiff_t>(left) * step_right, step_right, step_down});
    }

    [[nodiscard]] std::span<std::uint16_t> inq_values() noexcept {
        return {m_values.get(), std::size_t{m_rows} * m_picture.m_width * channels};
    }

private:
    // Where in the mosaic a band's rows come from.
    [[nodiscard]] mosaic_area area_of(unsigned top) const noexcept {
        const mosaic_area& frame = m_picture.m_frame;
        const unsigned flip = m_picture.m_flip;
        const bool from_columns = (flip & columns_become_rows) != 0;
        const bool from_the_end = (flip & (from_columns ? mirrored : upside_down)) != 0;
        const unsigned offset = from_the_end ? m_picture.m_height - top - m_rows : top;
        return from_columns ? mosaic_area{frame.left + offset, frame.top, m_rows, frame.height}
                            : mosaic_area{frame.left, frame.top + offset, frame.width, m_rows};
    }

    // Where in the band an area's pixels go.
    [[nodiscard]] pixel_target target_of(const mosaic_area& area) noexcept {
        const unsigned flip = m_picture.m_flip;
        std::ptrdiff_t step_right = channels;
        std::ptrdiff_t step_down = std::ptrdiff_t{channels} * m_picture.m_width;
        if ((flip & columns_become_rows) != 0)
            std::swap(step_right, step_down);
        std::ptrdiff_t first = 0;
        if ((flip & mirrored) != 0) {
            first += (static_cast<std::ptrdiff_t>(area.width) - 1) * step_right;
            step_right = -step_right;
        }
        if ((flip & upside_down) != 0) {
            first += (static_cast<std::ptrdiff_t>(area.height) - 1) * step_down;
            step_down = -step_down;
        }
        return {m_values.get() + first, step_right, step_down};
    }

    const developed_picture& m_picture;
    unsigned m_band_rows;
    unsigned m_rows = 0;
    stripe_developer m_developer;
    std::unique_ptr<std::uint16_t[]> m_values; // of a whole band, each filled before it is read
};

developed_picture::developed_picture(raw_decoder& decoder)
    : m_decoder(decoder),
      m_development(decoder),
      m_frame(find_camera_frame(decoder.inq_data())),
      m_flip(static_cast<unsigned>(decoder.inq_data().sizes.flip)),
      m_width(m_frame.width),
      m_height(m_frame.height) {
    if ((m_flip & columns_become_rows) != 0)
        std::swap(m_width, m_height);
}

void developed_picture::develop(unsigned workers, unsigned rows_per_piece, const rows_task& prepare,
                                const rows_task& take) {
    const unsigned band_rows = std::max(rows_of_a_band / rows_per_piece, 1U) * rows_per_piece;
    const unsigned bands = (m_height + band_rows - 1) / band_rows;
    const unsigned useful_workers = std::min(workers, bands);
    std::vector<band_maker> makers;
    makers.reserve(useful_workers);
    for (unsigned worker = 0; worker < useful_workers; ++worker)
        makers.emplace_back(*this, band_rows);

    const auto bring = [&](band_team& team) {
        m_decoder.decode(workers, [&](unsigned mosaic_rows) {
            if (!m_development.tones)
                m_development.learn_mosaic(m_decoder);
            team.announce(bands_within(mosaic_rows, band_rows));
        });
    };
    const auto make = [&](unsigned worker, unsigned band) {
        makers[worker].make(band);
        prepare(worker, makers[worker].inq_values());
    };
    band_team team([&] { bring(team); }, make,
                   [&](unsigned worker, unsigned) { take(worker, makers[worker].inq_values()); });
    team.run(useful_workers, bands);
}

// How many bands, from the top, can be made of the first rows of the mosaic.
unsigned developed_picture::bands_within(unsigned mosaic_rows, unsigned band_rows) const noexcept {
    const unsigned bands = (m_height + band_rows - 1) / band_rows;
    if (mosaic_rows >= m_development.mosaic.height)
        return bands;
    const unsigned needed_beside = m_frame.top + stripe_developer::rows_ahead;
    if ((m_flip & (columns_become_rows | upside_down)) != 0 || mosaic_rows <= needed_beside)
        return 0;
    return std::min((mosaic_rows - needed_beside) / band_rows, bands);
}

} // namespace sdk_open
