#include "sdk/open/decoding/scan_piece.h"

#include "sdk/open/decoding/byte_stuffing.h"
#include "sdk/open/decoding/differences.h"
#include "sdk/open/failure.h"

#include <algorithm>

namespace sdk_open {
namespace {

// Whether reading goes on alike from two components.
bool read_alike(const lossless_jpeg& jpeg, unsigned one, unsigned other) noexcept {
    bool are_alike = true;
    for (unsigned step = 0; step < jpeg.components; ++step)
        are_alike = are_alike && jpeg.codes[(one + step) % jpeg.components] ==
                                     jpeg.codes[(other + step) % jpeg.components];
    return are_alike;
}

} // namespace

// No code is shorter than a bit.
scan_piece::scan_piece()
    : m_differences(std::make_unique_for_overwrite<std::uint16_t[]>(noted_codes + most_bytes * 8)) {}

void scan_piece::load(std::span<const std::byte> scan, std::size_t first, std::size_t last) noexcept {
    const std::span bytes(m_bytes);
    const auto own = remove_stuffing(scan.subspan(first, last - first), bytes.first(most_bytes));
    const auto ahead =
        remove_stuffing(scan.subspan(first + own.n_read), bytes.subspan(own.n_written, read_ahead));
    std::ranges::fill(bytes.subspan(own.n_written + ahead.n_written), std::byte{0});
    m_bits = own.n_written * 8;
    m_has_marker = own.is_at_marker || ahead.is_at_marker;
    m_is_decoded = false;
    m_end_bit = 0;
    m_first = m_end = noted_codes;
}

void scan_piece::decode(scan_piece& one, scan_piece& other, const lossless_jpeg& jpeg) noexcept {
    if (one.m_has_marker || other.m_has_marker)
        return;
    try {
        one.note_places(jpeg);
        other.note_places(jpeg);
        while (const auto columns = std::min(one.inq_sure_columns(jpeg), other.inq_sure_columns(jpeg))) {
            std::array cursors = {one.inq_cursor(), other.inq_cursor()};
            read_columns<2>(jpeg.components, cursors, jpeg.codes, {one.inq_target(), other.inq_target()},
                            columns);
            one.move_on(cursors[0], columns * jpeg.components);
            other.move_on(cursors[1], columns * jpeg.components);
        }
        one.read_rest(0, jpeg);
        other.read_rest(0, jpeg);
        one.m_is_decoded = other.m_is_decoded = true;
    } catch (...) {
        // Perhaps there is no code only because none begins where reading began, and for lack of memory not
        // even that can be said: join() finds out.
    }
}

std::span<const std::uint16_t> scan_piece::join(scan_place& place, const lossless_jpeg& jpeg) {
    if (!m_is_decoded || !meet(place, jpeg)) {
        m_first = m_end = noted_codes;
        m_end_bit = place.bit;
        read_rest(place.component, jpeg);
    }
    const std::span<const std::uint16_t> differences(m_differences.get() + m_first, m_end - m_first);
    place.bit = m_end_bit - m_bits;
    place.component = static_cast<unsigned>((place.component + differences.size()) % jpeg.components);
    return differences;
}

// Reads from the place on until a place is reached that decode() came by, and puts what was read in front of
// what decode() read from there.
bool scan_piece::meet(const scan_place& place, const lossless_jpeg& jpeg) {
    std::array<std::uint16_t, noted_codes> lead{};
    std::size_t n_lead = 0;
    unsigned component = place.component;
    std::size_t bit = place.bit;
    bit_cursor cursor(m_bytes.data(), bit);
    for (unsigned at = 0; at < noted_codes && n_lead < noted_codes;) {
        if (m_places[at] < bit) {
            ++at;
        } else if (m_places[at] == bit && read_alike(jpeg, component, at % jpeg.components)) {
            m_first = noted_codes + at - n_lead;
            std::copy_n(lead.begin(), n_lead, m_differences.get() + m_first);
            return true;
        } else {
            lead[n_lead++] = read_difference(cursor, *jpeg.codes[component]);
            bit = cursor.inq_distance(m_bytes.data());
            component = (component + 1) % jpeg.components;
        }
    }
    return false;
}

void scan_piece::note_places(const lossless_jpeg& jpeg) {
    bit_cursor cursor = inq_cursor();
    for (unsigned at = 0; at < noted_codes; ++at) {
        m_places[at] = m_end_bit;
        read_code(cursor, *jpeg.codes[at % jpeg.components]);
    }
}

// Reads all codes that begin in the piece from where the last one ended, one of this component being next.
void scan_piece::read_rest(unsigned component, const lossless_jpeg& jpeg) {
    bit_cursor cursor = inq_cursor();
    while (m_end_bit < m_bits) {
        const std::size_t columns = component == 0 ? inq_sure_columns(jpeg) : 0;
        if (columns > 0) {
            std::array cursors = {cursor};
            read_columns<1>(jpeg.components, cursors, jpeg.codes, {inq_target()}, columns);
            cursor = cursors[0];
            move_on(cursor, columns * jpeg.components);
        } else {
            read_code(cursor, *jpeg.codes[component]);
            component = (component + 1) % jpeg.components;
        }
    }
}

void scan_piece::read_code(bit_cursor& cursor, const prefix_code& code) {
    *inq_target() = read_difference(cursor, code);
    move_on(cursor, 1);
}

// How many more columns certainly begin and end in the piece.
std::size_t scan_piece::inq_sure_columns(const lossless_jpeg& jpeg) const noexcept {
    return m_end_bit < m_bits
               ? (m_bits - m_end_bit) / (std::size_t{prefix_code::longest_length} * jpeg.components)
               : 0;
}

} // namespace sdk_open
