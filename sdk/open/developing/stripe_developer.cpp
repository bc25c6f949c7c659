#include "sdk/open/developing/stripe_developer.h"

#include "sdk/open/developing/row_tones.h"

#include <algorithm>
#include <cstdlib>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "sdk/open/developing/stripe_developer.cpp"
#include <hwy/foreach_target.h>

#include "sdk/open/developing/demosaic_rows-inl.h"

HWY_BEFORE_NAMESPACE();
namespace sdk_open::HWY_NAMESPACE {

using planes_t = stripe_developer::planes_t;

template <int... Offsets, typename Rows>
std::array<const float*, sizeof...(Offsets)> rows_around(Rows& rows, int row) {
    return {rows[row + Offsets]...};
}

// Takes every intermediate plane one row further when the tones have come to row + 11: each step is as many
// rows ahead of the next, and as many columns wider, as that one reaches. Afterwards the colour differences
// have come to row + 1. Above the first row that is wanted, a step waits until others will need what it
// finds.
class demosaic_step final {
public:
    demosaic_step(planes_t& planes, int row, int columns, const cfa_phase& phase) noexcept
        : m_planes(planes), m_row(row), m_columns(columns), m_phase(phase) {}

    void run(int first_row) const {
        const int rows_to_go = first_row - m_row;
        if (rows_to_go <= 18)
            find_differences_and_gradients(m_row + 9);
        if (rows_to_go <= 10)
            find_greens(m_row + 5);
        if (rows_to_go <= 4)
            cross_differences(rows_around<-3, -1, 1, 3>(m_planes.differences, m_row + 2),
                              m_planes.crossed_differences[m_row + 2], -2, m_columns + 2);
        if (rows_to_go <= 2)
            fill_colours(m_row + 1);
    }

private:
    void find_differences_and_gradients(int row) const {
        find_differences(rows_around<-2, -1, 0, 1, 2>(m_planes.tones, row), m_phase.is_green_odd(row),
                         m_planes.row_differences[row], m_planes.column_differences[row], -9, m_columns + 9);
        find_row_gradients(m_planes.row_differences[row], m_planes.row_gradients[row], -8, m_columns + 8);
        find_column_gradients(m_planes.column_differences[row - 2], m_planes.column_differences[row],
                              m_planes.column_gradients[row - 1], -5, m_columns + 5);
    }

    void find_greens(int row) const {
        float* const row_gradients = m_planes.summed_row_gradients[0];
        add_rows(rows_around<-1, 0, 1>(m_planes.row_gradients, row), row_gradients, -8, m_columns + 8);
        const green_input green{row_gradients,
                                rows_around<-3, -2, -1, 0, 1, 2, 3>(m_planes.column_gradients, row),
                                m_planes.row_differences[row],
                                rows_around<-4, -3, -2, -1, 0, 1, 2, 3, 4>(m_planes.column_differences, row)};
        find_green(green, weights_at(row), m_planes.differences[row], -5, m_columns + 5);
    }

    void fill_colours(int row) const {
        const colour_input colours{rows_around<-1, 0, 1>(m_planes.differences, row),
                                   rows_around<-1, 0, 1>(m_planes.crossed_differences, row), weights_at(row)};
        float* const red = m_planes.red_differences[row];
        float* const blue = m_planes.blue_differences[row];
        const bool is_red_row = m_phase.is_red_row(row);
        fill_differences(colours, m_phase.is_green_odd(row), is_red_row ? red : blue, is_red_row ? blue : red,
                         -1, m_columns + 1);
    }

    [[nodiscard]] direction_weights weights_at(int row) const {
        return {m_planes.left_weights[row], m_planes.right_weights[row], m_planes.above_weights[row],
                m_planes.below_weights[row]};
    }

    planes_t& m_planes;
    int m_row;
    int m_columns;
    const cfa_phase& m_phase;
};

void demosaic_row(planes_t& planes, int row, int first_row, int columns, const cfa_phase& phase) {
    demosaic_step(planes, row, columns, phase).run(first_row);
}

// What a tone stands for, and the offset on top of it.
inline tones_t offset_light_of(tones_t tone) {
    const tones_t root = hn::Max(tone, hn::Zero(lanes_t()));
    return hn::Mul(hn::Mul(root, root), root);
}

// A row of the matrix from the camera's light to 0 to 65535 of sRGB. Takes the offset away on the way, and
// adds a half, so that what is cut afterwards is rounded.
struct output_channel {
    explicit output_channel(const std::array<float, 3>& srgb_from_camera) {
        double offset = 0;
        for (std::size_t in = 0; in < weights.size(); ++in) {
            weights[in] = srgb_from_camera[in] * 65535.0F;
            offset += static_cast<double>(weights[in]) * tone_offset;
        }
        bias = static_cast<float>(0.5 - offset);
    }

    [[nodiscard]] tones_t operator()(const std::array<tones_t, 3>& camera) const {
        return hn::Add(hn::Add(hn::Mul(camera[0], all(weights[0])), hn::Mul(camera[1], all(weights[1]))),
                       hn::Add(hn::Mul(camera[2], all(weights[2])), all(bias)));
    }

    std::array<float, 3> weights{};
    float bias;
};

// The linear sRGB light, 0 to 65535, of a row whose colour differences and those of its neighbours are there.
void light_row(planes_t& planes, int row, int columns, const cfa_phase& phase,
               const std::array<std::array<float, 3>, 3>& srgb_from_camera,
               const std::array<std::uint16_t*, 3>& light) {
    const float* const tones = planes.tones[row];
    const float* const differences = planes.differences[row];
    const sorted_rows reds{planes.sorted_reds[0], planes.sorted_reds[1], planes.sorted_reds[2]};
    const sorted_rows blues{planes.sorted_blues[0], planes.sorted_blues[1], planes.sorted_blues[2]};
    sort_columns(rows_around<-1, 0, 1>(planes.red_differences, row), reds, -1, columns + 1);
    sort_columns(rows_around<-1, 0, 1>(planes.blue_differences, row), blues, -1, columns + 1);
    const std::array channels{output_channel(srgb_from_camera[0]), output_channel(srgb_from_camera[1]),
                              output_channel(srgb_from_camera[2])};
    const hn::RebindToSigned<lanes_t> integers;
    const hn::Rebind<std::uint16_t, lanes_t> values;
    for_columns(0, columns, [&](std::ptrdiff_t x) {
        const tones_t sampled = load(tones + x);
        const tones_t green = hn::IfThenElse(green_lanes(x, phase.is_green_odd(row)), sampled,
                                             hn::Add(sampled, load(differences + x)));
        const std::array camera{offset_light_of(hn::Sub(green, median_at(reds, x))), offset_light_of(green),
                                offset_light_of(hn::Sub(green, median_at(blues, x)))};
        for (std::size_t out = 0; out < light.size(); ++out)
            hn::StoreU(hn::DemoteTo(values, hn::ConvertTo(integers, channels[out](camera))), values,
                       light[out] + x);
    });
}

} // namespace sdk_open::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace sdk_open {

HWY_EXPORT(demosaic_row);
HWY_EXPORT(light_row);

namespace {

constexpr int margin = 12; // columns beside a stripe that its pixels depend on

// Where a position beyond an edge is mirrored to: the pattern of the CFA goes on. Fewer than 13 columns or
// rows would not reach around to the margin, but LibRaw takes no picture of fewer than 22 for one.
int mirror(int position, int size) noexcept {
    const int reflected = std::abs(position);
    return reflected < size ? reflected : 2 * (size - 1) - reflected;
}

} // namespace

stripe_developer::planes_t::planes_t(std::size_t row_size)
    : tones(row_size, margin),
      column_differences(row_size, margin),
      row_differences(row_size, margin),
      row_gradients(row_size, margin),
      column_gradients(row_size, margin),
      summed_row_gradients(row_size, margin),
      left_weights(row_size, margin),
      right_weights(row_size, margin),
      above_weights(row_size, margin),
      below_weights(row_size, margin),
      differences(row_size, margin),
      crossed_differences(row_size, margin),
      red_differences(row_size, margin),
      blue_differences(row_size, margin),
      sorted_reds(row_size, margin),
      sorted_blues(row_size, margin) {}

stripe_developer::stripe_developer(const development& shared)
    : m_shared(shared), m_planes(most_columns + 2 * margin + longest_vector), m_light{} {}

void stripe_developer::develop(const mosaic_area& area, const pixel_target& target) {
    const auto columns = static_cast<int>(area.width);
    const auto left = static_cast<int>(area.left - m_shared.lit.left);
    const auto top = static_cast<int>(area.top - m_shared.lit.top);
    const auto bottom = top + static_cast<int>(area.height);
    const bool is_odd_left = left % 2 != 0;
    const cfa_phase phase{m_shared.phase.is_green_first != is_odd_left, m_shared.phase.is_red_row_first};
    const std::array light{m_light[0].data(), m_light[1].data(), m_light[2].data()};
    constexpr int ahead = rows_ahead;
    std::uint16_t* pixels = target.first;
    for (int row = top - 2 * ahead; row < bottom; ++row) {
        load_row(row + ahead, left, columns);
        HWY_DYNAMIC_DISPATCH(demosaic_row)(m_planes, row, top, columns, phase);
        if (row < top)
            continue;
        HWY_DYNAMIC_DISPATCH(light_row)(m_planes, row, columns, phase, m_shared.srgb_from_camera, light);
        place_row(columns, pixels, target.step_right);
        pixels += target.step_down;
    }
}

void stripe_developer::place_row(int columns, std::uint16_t* pixel,
                                 std::ptrdiff_t step_right) const noexcept {
    for (std::size_t x = 0; x < static_cast<std::size_t>(columns); ++x, pixel += step_right)
        for (std::size_t channel = 0; channel < m_light.size(); ++channel)
            pixel[channel] = m_shared.curve[m_light[channel][x]];
}

void stripe_developer::load_row(int row, int left, int columns) {
    const mosaic_area& lit = m_shared.lit;
    const auto width = static_cast<int>(lit.width);
    const auto source_row = static_cast<unsigned>(mirror(row, static_cast<int>(lit.height)));
    const row_tones source{
        m_shared.mosaic.samples.data() + std::size_t{lit.top + source_row} * m_shared.mosaic.width + lit.left,
        {m_shared.tones->inq_table(source_row % 2 * 2), m_shared.tones->inq_table(source_row % 2 * 2 + 1)}};
    float* const tones = m_planes.tones[row];
    // Those beyond an edge one by one, the others in pairs and without a question.
    const int first = std::max(-margin, -left);
    const int pairs = (std::min(columns + margin, width - left) - first) / 2;
    for (int x = -margin; x < first; ++x)
        tones[x] = source.at(mirror(left + x, width));
    source.copy_pairs(left + first, pairs, tones + first);
    for (int x = first + 2 * pairs; x < columns + margin; ++x)
        tones[x] = source.at(mirror(left + x, width));
}

} // namespace sdk_open

#endif
