#include "sdk/open/decoding/lossless_jpeg.h"

#include "sdk/open/failure.h"

#include <numeric>
#include <optional>
#include <vector>

namespace sdk_open {
namespace {

constexpr unsigned start_of_image = 0xffd8;
constexpr unsigned start_of_frame_lossless = 0xffc3;
constexpr unsigned define_huffman_tables = 0xffc4;
constexpr unsigned start_of_scan = 0xffda;
constexpr unsigned define_restart_interval = 0xffdd;

// Takes big-endian values off the front of bytes that someone else owns.
class byte_reader final {
public:
    explicit byte_reader(std::span<const std::byte> bytes) noexcept : m_bytes(bytes) {}

    [[nodiscard]] std::span<const std::byte> inq_rest() const noexcept { return m_bytes; }

    [[nodiscard]] std::span<const std::byte> take(std::size_t count) {
        if (count > m_bytes.size())
            throw_damaged("the pixel data end early");
        const auto taken = m_bytes.first(count);
        m_bytes = m_bytes.subspan(count);
        return taken;
    }

    [[nodiscard]] std::uint8_t take_u8() { return std::to_integer<std::uint8_t>(take(1)[0]); }

    // Bytes 12 34 give 0x1234.
    [[nodiscard]] unsigned take_u16() {
        const unsigned high = take_u8();
        return high << 8 | take_u8();
    }

    // Any number of bytes ff may fill up before a marker.
    [[nodiscard]] unsigned take_marker() {
        constexpr std::byte fill{0xff};
        while (m_bytes.size() >= 2 && m_bytes[0] == fill && m_bytes[1] == fill)
            m_bytes = m_bytes.subspan(1);
        return take_u16();
    }

private:
    std::span<const std::byte> m_bytes;
};

constexpr std::size_t table_count = 4;

// What the segments have told so far.
struct headers {
    sampling_t sampling = sampling_t::even; // that is wanted
    std::optional<lossless_jpeg> frame;
    std::array<unsigned, most_jpeg_components> names{}; // of the frame's components
    std::array<std::shared_ptr<const prefix_code>, table_count> tables;
    unsigned restart_interval = 0; // in columns of a line, counted on from line to line
};

void read_tables(byte_reader segment, headers& found) {
    while (!segment.inq_rest().empty()) {
        const std::size_t class_and_index = segment.take_u8();
        if (class_and_index >= table_count)
            throw_damaged("a code table of the pixel data is damaged");
        std::array<std::uint8_t, prefix_code::longest_code> counts{};
        for (std::uint8_t& count : counts)
            count = segment.take_u8();
        std::vector<std::uint8_t> symbols(std::accumulate(counts.begin(), counts.end(), std::size_t{0}));
        for (std::uint8_t& symbol : symbols)
            symbol = segment.take_u8();
        found.tables[class_and_index] =
            std::make_shared<const prefix_code>(counts, symbols, symbols_t::magnitudes);
    }
}

[[noreturn]] void throw_impossible_geometry() {
    throw_damaged("the pixel data have an impossible geometry");
}

// The factors are the horizontal and the vertical one, four bits each.
bool is_sampled_as(sampling_t wanted, unsigned component, unsigned factors) noexcept {
    if (wanted == sampling_t::reduced && component == 0)
        return factors == 0x21 || factors == 0x22;
    return factors == 0x11;
}

void read_frame(byte_reader segment, headers& found) {
    lossless_jpeg frame{};
    frame.precision = segment.take_u8();
    frame.height = segment.take_u16();
    frame.width = segment.take_u16();
    frame.components = segment.take_u8();
    if (frame.precision < 2 || frame.precision > 16 || frame.components > most_jpeg_components ||
        frame.inq_sample_count() == 0 || found.frame ||
        (found.sampling == sampling_t::reduced && (frame.components != 3 || frame.width < 2)))
        throw_impossible_geometry();
    for (unsigned component = 0; component < frame.components; ++component) {
        found.names[component] = segment.take_u8();
        if (!is_sampled_as(found.sampling, component, segment.take_u8()))
            throw_unknown_storage();
        [[maybe_unused]] const unsigned quantisation = segment.take_u8();
    }
    found.frame = frame;
}

void read_restart_lines(lossless_jpeg& frame, unsigned interval) {
    if (interval % frame.width != 0)
        throw failure(error_code_t::not_supported, "the pixel data restart within a line");
    frame.restart_lines = interval / frame.width;
}

lossless_jpeg read_scan(byte_reader segment, const headers& found) {
    if (!found.frame || segment.take_u8() != found.frame->components)
        throw_impossible_geometry();
    lossless_jpeg jpeg = *found.frame;
    for (unsigned component = 0; component < jpeg.components; ++component) {
        if (segment.take_u8() != found.names[component])
            throw_impossible_geometry();
        const std::size_t index = segment.take_u8() >> 4;
        if (index >= table_count || found.tables[index] == nullptr)
            throw_damaged("a code table of the pixel data is missing");
        jpeg.codes[component] = found.tables[index];
        if (*jpeg.codes[component] == *jpeg.codes[0]) // tables often are: they need the cache only once
            jpeg.codes[component] = jpeg.codes[0];
    }
    jpeg.predictor = segment.take_u8();
    [[maybe_unused]] const unsigned end_of_spectrum = segment.take_u8();
    const bool is_shifted = segment.take_u8() != 0;
    if (jpeg.predictor < 1 || jpeg.predictor > 7 || is_shifted)
        throw_damaged("the pixel data have an unknown predictor");
    read_restart_lines(jpeg, found.restart_interval);
    return jpeg;
}

} // namespace

lossless_jpeg read_lossless_jpeg(std::span<const std::byte> bytes, sampling_t sampling) {
    byte_reader reader(bytes);
    if (reader.take_u16() != start_of_image)
        throw_damaged("there are no pixel data where they should be");
    headers found;
    found.sampling = sampling;
    for (;;) {
        const unsigned marker = reader.take_marker();
        const unsigned length = reader.take_u16();
        if (length < 2)
            throw_damaged("the header of the pixel data is damaged");
        byte_reader segment(reader.take(length - 2));
        switch (marker) {
        case start_of_frame_lossless:
            read_frame(segment, found);
            break;
        case define_huffman_tables:
            read_tables(segment, found);
            break;
        case define_restart_interval:
            found.restart_interval = segment.take_u16();
            break;
        case start_of_scan: {
            lossless_jpeg jpeg = read_scan(segment, found);
            jpeg.scan = reader.inq_rest();
            return jpeg;
        }
        default:
            throw_damaged("the header of the pixel data is damaged");
        }
    }
}

} // namespace sdk_open
