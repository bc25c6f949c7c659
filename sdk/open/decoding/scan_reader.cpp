#include "sdk/open/decoding/scan_reader.h"

#include "sdk/open/decoding/differences.h"
#include "sdk/open/failure.h"

#include <algorithm>

namespace sdk_open {
namespace {

constexpr std::size_t most_code_bytes = 4; // that a code and its difference touch

} // namespace

// Where the coding starts afresh within the scan, no piece knows which codes are the first of a line.
scan_reader::scan_reader(const lossless_jpeg& jpeg, unsigned workers) : m_jpeg(jpeg), m_segment(jpeg.scan) {
    if (jpeg.restart_lines == 0)
        m_pieces = std::make_unique<scan_pieces>(jpeg, workers);
}

std::span<const std::uint16_t> scan_reader::read(std::size_t most_columns) {
    while (m_pieces != nullptr && m_joined.size() < m_jpeg.components) {
        const std::size_t begun = m_joined.size(); // of a column that goes on in the next piece
        std::ranges::copy(m_joined, m_block.begin());
        join_next();
        if (begun == 0)
            continue;
        for (std::size_t component = begun; component < m_jpeg.components; ++component)
            m_block[component] = read_one(component);
        return std::span(m_block).first(m_jpeg.components);
    }
    if (m_pieces == nullptr)
        return read_in_order(most_columns);
    const std::size_t columns = std::min(most_columns, m_joined.size() / m_jpeg.components);
    const auto differences = m_joined.first(columns * m_jpeg.components);
    m_joined = m_joined.subspan(differences.size());
    return differences;
}

void scan_reader::restart(unsigned number) {
    const auto rest = m_segment.finish();
    if (rest.size() < 2 || std::to_integer<unsigned>(rest[1]) != 0xd0 + number)
        throw_damaged("the pixel data restart where they should not");
    m_segment = segment_reader(rest.subspan(2));
}

void scan_reader::finish() {
    constexpr std::array end_of_image = {std::byte{0xff}, std::byte{0xd9}};
    auto rest = m_pieces == nullptr ? m_segment.finish() : std::span<const std::byte>();
    while (rest.size() > 2 && rest[1] == std::byte{0xff}) // fills up before the marker
        rest = rest.subspan(1);
    if (rest.size() < 2 || !std::ranges::equal(rest.first(2), end_of_image))
        throw_damaged("the pixel data do not end where they should");
}

std::span<const std::uint16_t> scan_reader::read_in_order(std::size_t most_columns) {
    const std::size_t columns = std::min(most_columns, m_block.size() / m_jpeg.components);
    const auto differences = std::span(m_block).first(columns * m_jpeg.components);
    std::array cursors = {m_segment.resume(differences.size() * most_code_bytes)};
    read_columns<1>(m_jpeg.components, cursors, m_jpeg.codes, {differences.data()}, columns);
    m_segment.suspend(cursors[0]);
    return differences;
}

std::uint16_t scan_reader::read_one(std::size_t component) {
    if (m_pieces != nullptr) {
        const std::uint16_t difference = m_joined.front();
        m_joined = m_joined.subspan(1);
        return difference;
    }
    bit_cursor cursor = m_segment.resume(most_code_bytes);
    const std::uint16_t difference = read_difference(cursor, *m_jpeg.codes[component]);
    m_segment.suspend(cursor);
    return difference;
}

// The last piece, and what is too short to be cut, are read in order: only so is it seen where the data end.
void scan_reader::join_next() {
    scan_piece* const piece = m_pieces->take();
    if (piece != nullptr && !piece->has_marker()) {
        m_joined = piece->join(m_place, m_jpeg);
        return;
    }
    m_joined = {};
    m_segment = segment_reader(m_jpeg.scan.subspan(m_pieces->inq_start()), m_place.bit);
    m_pieces.reset();
}

} // namespace sdk_open
