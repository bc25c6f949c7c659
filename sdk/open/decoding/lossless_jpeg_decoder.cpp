#include "sdk/open/decoding/lossless_jpeg_decoder.h"

#include "sdk/open/failure.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace sdk_open {
namespace {

// Sums up the differences of whole columns, each component's on from its sum so far (predictor 1).
template <std::size_t components>
void add_up(std::span<const std::uint16_t> differences, std::span<unsigned> sums, std::uint16_t* samples) {
    std::array<unsigned, components> sum{};
    std::copy_n(sums.begin(), components, sum.begin());
    for (std::size_t at = 0; at < differences.size(); at += components)
        for (std::size_t c = 0; c < components; ++c) {
            sum[c] += differences[at + c];
            samples[at + c] = static_cast<std::uint16_t>(sum[c]);
        }
    std::ranges::copy(sum, sums.begin());
}

// Predictors 2 to 7 (T.81, table H.1) from the samples to the left, above, and above to the left.
unsigned predict(unsigned predictor, int left, int above, int above_left) noexcept {
    const auto value = [=] {
        switch (predictor) {
        case 2:
            return above;
        case 3:
            return above_left;
        case 4:
            return left + above - above_left;
        case 5:
            return left + ((above - above_left) >> 1);
        case 6:
            return above + ((left - above_left) >> 1);
        default:
            return (left + above) >> 1;
        }
    };
    return static_cast<unsigned>(value());
}

} // namespace

lossless_jpeg_decoder::lossless_jpeg_decoder(const lossless_jpeg& jpeg, unsigned workers)
    : m_jpeg(jpeg),
      m_scan(m_jpeg, workers),
      m_line(std::size_t{m_jpeg.width} * m_jpeg.components),
      m_line_above(m_line.size()) {
    m_line_starts.fill(1U << (m_jpeg.precision - 1));
}

std::span<const std::uint16_t> lossless_jpeg_decoder::decode_line() {
    const bool starts_afresh = m_jpeg.restart_lines != 0 && m_next_line % m_jpeg.restart_lines == 0;
    if (starts_afresh && m_next_line != 0) {
        m_scan.restart((m_next_line / m_jpeg.restart_lines - 1) % 8); // the markers are numbered from 0 to 7
        m_line_starts.fill(1U << (m_jpeg.precision - 1));
    }
    std::swap(m_line, m_line_above);
    const std::span line(m_line);
    decode_columns(line.first(m_jpeg.components), m_line_starts);
    predictions sums = m_line_starts;
    decode_columns(line.subspan(m_jpeg.components), sums);
    if (m_jpeg.predictor != 1 && m_next_line != 0 && !starts_afresh)
        predict_from_above();
    check_precision();
    ++m_next_line;
    return line;
}

void lossless_jpeg_decoder::decode_columns(std::span<std::uint16_t> samples, predictions& sums) {
    while (!samples.empty()) {
        const auto differences = m_scan.read(samples.size() / m_jpeg.components);
        switch (m_jpeg.components) {
        case 1:
            add_up<1>(differences, sums, samples.data());
            break;
        case 2:
            add_up<2>(differences, sums, samples.data());
            break;
        case 3:
            add_up<3>(differences, sums, samples.data());
            break;
        default:
            add_up<4>(differences, sums, samples.data());
        }
        samples = samples.subspan(differences.size());
    }
}

// Takes the differences, which were summed up along the line, apart again and adds them to what the line
// above predicts.
void lossless_jpeg_decoder::predict_from_above() {
    const std::size_t step = m_jpeg.components;
    for (std::size_t component = 0; component < step; ++component) {
        unsigned sum = m_line[component];
        for (std::size_t at = component + step; at < m_line.size(); at += step) {
            const unsigned difference = m_line[at] - std::exchange(sum, m_line[at]);
            m_line[at] =
                static_cast<std::uint16_t>(difference + predict(m_jpeg.predictor, m_line[at - step],
                                                                m_line_above[at], m_line_above[at - step]));
        }
    }
}

void lossless_jpeg_decoder::check_precision() const {
    unsigned all = 0;
    for (const std::uint16_t sample : m_line)
        all |= sample;
    if (all >> m_jpeg.precision != 0)
        throw_damaged("the pixel data are damaged");
}

} // namespace sdk_open
