#include "sdk/open/decoding/lossless_jpeg_decoder.h"

#include "sdk/open/failure.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>

namespace sdk_open {
namespace {

constexpr std::size_t most_sample_bytes = 4; // that a code and its difference touch

// Decodes whole columns, to each component's sum so far its next difference added (predictor 1). Two codes
// seldom take more bits than a refill gives, so one refill serves two components.
template <std::size_t components>
void add_differences(bit_cursor& bits, std::span<const std::shared_ptr<const prefix_code>> codes,
                     std::span<unsigned> sums, std::span<std::uint16_t> samples) {
    bit_cursor cursor = bits;
    std::array<const prefix_code*, components> code{};
    std::array<unsigned, components> sum{};
    for (std::size_t c = 0; c < components; ++c) {
        code[c] = codes[c].get();
        sum[c] = sums[c];
    }
    std::uint16_t* out = samples.data();
    for (const std::uint16_t* const end = out + samples.size(); out != end; out += components)
        for (std::size_t c = 0; c < components; ++c) {
            if (c % 2 == 0 || cursor.inq_count() < prefix_code::longest_length)
                cursor.refill();
            const coded_difference found = code[c]->find(cursor.inq_bits());
            sum[c] += found.value(cursor.inq_bits());
            cursor.skip(found.length);
            out[c] = static_cast<std::uint16_t>(sum[c]);
        }
    for (std::size_t c = 0; c < components; ++c)
        sums[c] = sum[c];
    bits = cursor;
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

lossless_jpeg_decoder::lossless_jpeg_decoder(lossless_jpeg jpeg)
    : m_jpeg(std::move(jpeg)),
      m_segment(m_jpeg.scan),
      m_line(std::size_t{m_jpeg.width} * m_jpeg.components),
      m_line_above(m_line.size()) {
    m_line_starts.fill(1U << (m_jpeg.precision - 1));
}

std::span<const std::uint16_t> lossless_jpeg_decoder::decode_line() {
    const bool starts_afresh = m_jpeg.restart_lines != 0 && m_next_line % m_jpeg.restart_lines == 0;
    if (starts_afresh && m_next_line != 0)
        restart();
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

void lossless_jpeg_decoder::finish() {
    constexpr std::array end_of_image = {std::byte{0xff}, std::byte{0xd9}};
    auto rest = m_segment.finish();
    while (rest.size() > 2 && rest[1] == std::byte{0xff}) // fills up before the marker
        rest = rest.subspan(1);
    if (rest.size() < 2 || !std::ranges::equal(rest.first(2), end_of_image))
        throw_damaged("the pixel data do not end where they should");
}

// The segments are numbered from 0 to 7 over and over, in the markers between them.
void lossless_jpeg_decoder::restart() {
    const auto rest = m_segment.finish();
    const unsigned number = (m_next_line / m_jpeg.restart_lines - 1) % 8;
    if (rest.size() < 2 || std::to_integer<unsigned>(rest[1]) != 0xd0 + number)
        throw_damaged("the pixel data restart where they should not");
    m_segment = segment_reader(rest.subspan(2));
    m_line_starts.fill(1U << (m_jpeg.precision - 1));
}

void lossless_jpeg_decoder::decode_columns(std::span<std::uint16_t> samples, predictions& sums) {
    const std::size_t columns_at_once = segment_reader::most_at_once / most_sample_bytes / m_jpeg.components;
    while (!samples.empty()) {
        const auto part = samples.first(std::min(samples.size(), columns_at_once * m_jpeg.components));
        bit_cursor bits = m_segment.resume(part.size() * most_sample_bytes);
        switch (m_jpeg.components) {
        case 1:
            add_differences<1>(bits, m_jpeg.codes, sums, part);
            break;
        case 2:
            add_differences<2>(bits, m_jpeg.codes, sums, part);
            break;
        case 3:
            add_differences<3>(bits, m_jpeg.codes, sums, part);
            break;
        default:
            add_differences<4>(bits, m_jpeg.codes, sums, part);
        }
        m_segment.suspend(bits);
        samples = samples.subspan(part.size());
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
