#include "tests/sdk/open/decoding/lossless_jpeg_writer.h"

#include <algorithm>
#include <bit>
#include <cstdlib>

namespace {

void append(std::string& bytes, std::initializer_list<std::size_t> values) {
    for (const std::size_t value : values)
        bytes.push_back(static_cast<char>(value));
}

void append_segment(std::string& bytes, std::size_t marker, const std::string& content) {
    const std::size_t length = content.size() + 2;
    append(bytes, {0xff, marker, length >> 8, length});
    bytes += content;
}

class bit_writer {
public:
    explicit bit_writer(std::string& bytes) : m_bytes(bytes) {}

    void put(unsigned value, unsigned count) {
        while (count-- > 0) {
            m_byte = m_byte << 1 | (value >> count & 1U);
            if (++m_count < 8)
                continue;
            append(m_bytes, {m_byte});
            if (m_byte == 0xff)
                append(m_bytes, {0});
            m_byte = m_count = 0;
        }
    }

    void fill_up() { put(0x7f, m_count == 0 ? 0 : 8 - m_count); }

private:
    std::string& m_bytes;
    unsigned m_byte = 0;
    unsigned m_count = 0;
};

void put_symbol(bit_writer& bits, const code_table& table, unsigned symbol) {
    const auto found = std::ranges::find(table.symbols, symbol);
    auto place = static_cast<unsigned>(found - table.symbols.begin());
    unsigned first_code = 0;
    for (unsigned length = 1; length <= 16; ++length, first_code <<= 1) {
        const unsigned count = table.counts[length - 1];
        if (place < count)
            return bits.put(first_code + place, length);
        place -= count;
        first_code += count;
    }
    std::abort(); // the table has no code for it
}

void put_difference(bit_writer& bits, const code_table& table, unsigned modulo_65536) {
    const int difference = modulo_65536 <= 32768 ? int(modulo_65536) : int(modulo_65536) - 65536;
    const auto size = static_cast<unsigned>(std::bit_width(static_cast<unsigned>(std::abs(difference))));
    put_symbol(bits, table, size);
    if (size < 16)
        bits.put(static_cast<unsigned>(difference < 0 ? difference - 1 : difference), size);
}

int predict(unsigned predictor, int left, int above, int corner) {
    const int predictions[] = {left,
                               above,
                               corner,
                               left + above - corner,
                               left + ((above - corner) >> 1),
                               above + ((left - corner) >> 1),
                               (left + above) >> 1};
    return predictions[predictor - 1];
}

std::string headers(const jpeg_plan& plan) {
    std::string bytes;
    append(bytes, {0xff, 0xd8});
    std::string frame;
    std::string scan;
    append(frame,
           {plan.precision, plan.height >> 8, plan.height, plan.width >> 8, plan.width, plan.components});
    append(scan, {plan.components});
    for (std::size_t c = 0; c < plan.components; ++c) {
        append(frame, {c + 1, 0x11, 0});
        append(scan, {c + 1, std::min(c, plan.tables.size() - 1) << 4});
    }
    append(scan, {plan.predictor, 0, 0});
    for (std::size_t at = 0; at < plan.tables.size(); ++at) {
        std::string table(1, static_cast<char>(at));
        table.append(plan.tables[at].counts.begin(), plan.tables[at].counts.end());
        table.append(plan.tables[at].symbols.begin(), plan.tables[at].symbols.end());
        append_segment(bytes, 0xc4, table);
    }
    append_segment(bytes, 0xc3, frame);
    if (plan.restart_interval != 0)
        append_segment(
            bytes, 0xdd,
            {static_cast<char>(plan.restart_interval >> 8), static_cast<char>(plan.restart_interval)});
    append_segment(bytes, 0xda, scan);
    return bytes;
}

} // namespace

std::string write_lossless_jpeg(const jpeg_plan& plan, std::span<const std::uint16_t> samples) {
    std::string bytes = headers(plan);
    bit_writer bits(bytes);
    const std::size_t step = plan.components;
    const std::size_t pitch = plan.width * step;
    unsigned first_line = 0; // since the coding last started afresh
    for (unsigned line = 0; line < plan.height; ++line) {
        if (plan.restart_interval != 0 && line != 0 && line * plan.width % plan.restart_interval == 0) {
            bits.fill_up();
            append(bytes, {0xff, 0xd0 + (line * plan.width / plan.restart_interval - 1) % 8});
            first_line = line;
        }
        for (std::size_t at = 0; at < pitch; ++at) {
            const std::uint16_t* const sample = &samples[line * pitch + at];
            int predicted = 1 << (plan.precision - 1);
            if (at >= step && line > first_line)
                predicted =
                    predict(plan.predictor, sample[-int(step)], *(sample - pitch), *(sample - pitch - step));
            else if (at >= step)
                predicted = sample[-int(step)];
            else if (line > first_line)
                predicted = *(sample - pitch);
            put_difference(bits, plan.tables[std::min(at % step, plan.tables.size() - 1)],
                           static_cast<unsigned>(*sample - predicted) & 0xffffU);
        }
    }
    bits.fill_up();
    append(bytes, {0xff, 0xd9});
    return bytes;
}
