#pragma once

#include "sdk/open/decoding/bit_cursor.h"
#include "sdk/open/decoding/lossless_jpeg.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace sdk_open {

// A place between two codes: the next bit, counted from the start of a piece, and the component whose code
// begins there.
struct scan_place {
    std::size_t bit;
    unsigned component;
};

// A piece of a scan, decoded before it is known where in it the first code begins. Prefix codes soon fall
// into step from wherever they are read: two readers that have met at one place read the same from there on.
// So a piece is read from its first bit, and joined later to what comes before it.
class scan_piece final {
public:
    static constexpr std::size_t most_bytes = 32768; // of the scan

    scan_piece();

    // Takes the bytes of a scan from first on, to before last. The last of them must not be ff.
    void load(std::span<const std::byte> scan, std::size_t first, std::size_t last) noexcept;

    // Reads two pieces that were just loaded, in hardly more time than one.
    static void decode(scan_piece& one, scan_piece& other, const lossless_jpeg& jpeg) noexcept;

    // The differences, modulo 2^16, from the place on where the first code really begins, of all codes that
    // begin in the piece. They stay until the next load. Moves the place on to the next piece. Throws
    // failure(damaged_picture) where there is no code.
    [[nodiscard]] std::span<const std::uint16_t> join(scan_place& place, const lossless_jpeg& jpeg);

    // Whether the scan ends in the piece, or shortly after it. Such a piece cannot be joined.
    [[nodiscard]] bool has_marker() const noexcept { return m_has_marker; }

private:
    // How many codes at the start have their places noted down: divisible by 1 to 4, the possible numbers of
    // components. It is rare that readers do not meet within a hundred. As many differences may stand in
    // front of the first.
    static constexpr std::size_t noted_codes = 480;
    static constexpr std::size_t read_ahead = 32; // bytes of the next piece, which the last code reaches into

    void note_places(const lossless_jpeg& jpeg);
    void read_rest(unsigned component, const lossless_jpeg& jpeg);
    void read_code(bit_cursor& cursor, const prefix_code& code);
    [[nodiscard]] std::size_t inq_sure_columns(const lossless_jpeg& jpeg) const noexcept;
    [[nodiscard]] bool meet(const scan_place& place, const lossless_jpeg& jpeg);

    [[nodiscard]] bit_cursor inq_cursor() const noexcept { return {m_bytes.data(), m_end_bit}; }
    [[nodiscard]] std::uint16_t* inq_target() noexcept { return m_differences.get() + m_end; }
    void move_on(const bit_cursor& cursor, std::size_t n_differences) noexcept {
        m_end_bit = cursor.inq_distance(m_bytes.data());
        m_end += n_differences;
    }

    std::array<std::byte, most_bytes + 2 * read_ahead> m_bytes{};
    std::size_t m_bits = 0; // of the piece itself
    bool m_has_marker = false;
    bool m_is_decoded = false;
    std::array<std::size_t, noted_codes> m_places{}; // the first bits of the first codes
    std::size_t m_end_bit = 0;                       // after the codes that were read
    std::unique_ptr<std::uint16_t[]> m_differences;
    std::size_t m_first = 0; // the differences in use
    std::size_t m_end = 0;
};

} // namespace sdk_open
