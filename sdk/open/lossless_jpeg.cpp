#include "sdk/open/lossless_jpeg.h"

#include "sdk/open/failure.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <optional>
#include <vector>

namespace sdk_open {
namespace {

constexpr unsigned start_of_image = 0xffd8;
constexpr unsigned end_of_image = 0xffd9;
constexpr unsigned start_of_frame_lossless = 0xffc3;
constexpr unsigned define_huffman_tables = 0xffc4;
constexpr unsigned start_of_scan = 0xffda;

[[noreturn]] void throw_damaged(const char* reason) {
    throw failure(error_code_t::damaged_picture, reason);
}

[[noreturn]] void throw_cut_off() {
    throw_damaged("the pixel data end early");
}

// Takes big-endian values off the front of bytes that someone else owns.
class byte_reader final {
public:
    explicit byte_reader(std::span<const std::byte> bytes) noexcept : m_bytes(bytes) {}

    [[nodiscard]] bool is_empty() const noexcept { return m_bytes.empty(); }

    [[nodiscard]] std::span<const std::byte> take(std::size_t count) {
        if (count > m_bytes.size())
            throw_cut_off();
        const auto taken = m_bytes.first(count);
        m_bytes = m_bytes.subspan(count);
        return taken;
    }

    [[nodiscard]] unsigned take_u8() { return std::to_integer<unsigned>(take(1)[0]); }

    // Bytes 12 34 give 0x1234.
    [[nodiscard]] unsigned take_u16() {
        const unsigned high = take_u8();
        return high << 8 | take_u8();
    }

    // Steps over the byte ff where it stands before another one, as it may to fill up before a marker.
    void skip_fill_byte() noexcept {
        constexpr std::byte fill{0xff};
        if (m_bytes.size() >= 2 && m_bytes[0] == fill && m_bytes[1] == fill)
            m_bytes = m_bytes.subspan(1);
    }

private:
    std::span<const std::byte> m_bytes;
};

using code_table = std::vector<unsigned>; // the 16 code counts, then the symbols; empty where undefined
constexpr std::size_t table_count = 4;

struct headers {
    std::optional<lossless_jpeg> frame;
    std::array<code_table, table_count> tables;
};

[[noreturn]] void throw_damaged_table() {
    throw_damaged("a code table of the pixel data is damaged");
}

// The counts are those of a prefix code: its codes fit into the code space, and there are some.
void check_counts(std::span<const unsigned> counts) {
    const auto longest_code = static_cast<unsigned>(counts.size());
    const unsigned whole_space = 1U << longest_code;
    unsigned space = whole_space;
    for (unsigned length = 1; length <= longest_code; ++length) {
        const unsigned taken = counts[length - 1] << (longest_code - length);
        if (taken > space)
            throw_damaged_table();
        space -= taken;
    }
    if (space == whole_space)
        throw_damaged_table();
}

code_table read_table(byte_reader& segment) {
    constexpr std::size_t longest_code = 16;
    constexpr unsigned longest_difference = 16; // bits
    code_table table;
    while (table.size() < longest_code)
        table.push_back(segment.take_u8());
    check_counts(table);
    const std::size_t size = std::accumulate(table.begin(), table.end(), longest_code);
    while (table.size() < size)
        if (table.emplace_back(segment.take_u8()) > longest_difference)
            throw_damaged_table();
    return table;
}

void read_tables(byte_reader segment, headers& found) {
    while (!segment.is_empty()) {
        const unsigned class_and_index = segment.take_u8();
        if (class_and_index >= table_count)
            throw_damaged_table();
        found.tables[class_and_index] = read_table(segment);
    }
}

lossless_jpeg read_frame(byte_reader segment) {
    lossless_jpeg frame{};
    frame.precision = segment.take_u8();
    frame.height = segment.take_u16();
    frame.width = segment.take_u16();
    frame.components = segment.take_u8();
    const bool has_known_layout = frame.components == 1 || frame.components == 2 || frame.components == 4;
    if (frame.precision < 2 || frame.precision > 16 || frame.inq_sample_count() == 0 || !has_known_layout)
        throw_damaged("the pixel data have an impossible geometry");
    for (unsigned component = 0; component < frame.components; ++component) {
        constexpr unsigned not_subsampled = 0x11;
        [[maybe_unused]] const unsigned name = segment.take_u8();
        if (segment.take_u8() != not_subsampled)
            throw failure(error_code_t::not_supported,
                          "raw pictures of reduced resolution are not supported");
        [[maybe_unused]] const unsigned quantisation = segment.take_u8();
    }
    return frame;
}

// The decoder gives component n the n-th table, or the last one before it that is defined.
const code_table& table_that_decodes(const headers& found, std::size_t component) {
    std::size_t index = std::min(component, table_count - 1);
    while (index > 0 && found.tables[index].empty())
        --index;
    return found.tables[index];
}

void check_scan(byte_reader segment, const headers& found) {
    if (!found.frame || segment.take_u8() != found.frame->components)
        throw_damaged("the pixel data have an impossible geometry");
    for (std::size_t component = 0; component < found.frame->components; ++component) {
        [[maybe_unused]] const unsigned name = segment.take_u8();
        const std::size_t index = segment.take_u8() >> 4;
        if (index >= table_count || found.tables[index].empty())
            throw_damaged("a code table of the pixel data is missing");
        if (table_that_decodes(found, component) != found.tables[index])
            throw failure(error_code_t::not_supported,
                          "the pixel data use their code tables in an unknown way");
    }
    const unsigned predictor = segment.take_u8();
    [[maybe_unused]] const unsigned end_of_spectrum = segment.take_u8();
    if (predictor < 1 || predictor > 7 || segment.take_u8() != 0)
        throw_damaged("the pixel data have an unknown predictor");
}

} // namespace

lossless_jpeg read_lossless_jpeg(std::span<const std::byte> bytes) {
    byte_reader reader(bytes);
    if (reader.take_u16() != start_of_image)
        throw_damaged("there are no pixel data where they should be");
    headers found;
    for (;;) {
        const unsigned marker = reader.take_u16();
        const unsigned length = reader.take_u16();
        if (length < 2)
            throw_damaged("the header of the pixel data is damaged");
        const byte_reader segment(reader.take(length - 2));
        switch (marker) {
        case start_of_frame_lossless:
            found.frame = read_frame(segment);
            // The decoder steps over one byte behind the frame of a single component.
            if (found.frame->components == 1)
                reader.skip_fill_byte();
            break;
        case define_huffman_tables:
            read_tables(segment, found);
            break;
        case start_of_scan:
            check_scan(segment, found);
            return *found.frame;
        default:
            throw_damaged("the header of the pixel data is damaged");
        }
    }
}

bool ends_at(std::span<const std::byte> bytes, std::size_t stop) {
    constexpr std::size_t read_ahead = 6;
    constexpr std::size_t padding = 4;
    const std::size_t first = stop - std::min(stop, read_ahead);
    const std::size_t last = std::min(bytes.size(), stop + padding);
    for (std::size_t at = first; at + 1 < last; ++at)
        if (byte_reader(bytes.subspan(at)).take_u16() == end_of_image)
            return true;
    return false;
}

} // namespace sdk_open
