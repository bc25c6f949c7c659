#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>
#include <vector>

// The codes of symbols, and how a lossless JPEG holds them.
struct code_table {
    std::array<unsigned, 17> codes;
    std::array<unsigned, 17> lengths; // in bits
    std::string segment;              // how many codes of 1 to 16 bits, and what they stand for
};

// The lengths, which never fall, may be more than the symbols.
inline code_table make_table(std::span<const unsigned> lengths, std::span<const std::uint8_t> symbols) {
    code_table table{{}, {}, std::string(16, '\0')};
    unsigned next_code = 0;
    for (std::size_t at = 0; at < symbols.size(); ++at) {
        table.codes[symbols[at]] = next_code;
        table.lengths[symbols[at]] = lengths[at];
        table.segment[lengths[at] - 1]++;
        if (at + 1 < lengths.size())
            next_code = (next_code + 1) << (lengths[at + 1] - lengths[at]);
    }
    table.segment.append(symbols.begin(), symbols.end());
    return table;
}

struct jpeg_plan {
    unsigned precision;
    unsigned width; // in columns of one sample for each component
    unsigned height;
    unsigned components;
    unsigned predictor;
    unsigned restart_lines;         // 0 for none
    std::vector<code_table> tables; // the components have them in turn
};

class lossless_jpeg_writer final {
public:
    explicit lossless_jpeg_writer(const jpeg_plan& plan) : m_plan(plan) {}

    // The whole stream.
    [[nodiscard]] std::string write(std::span<const std::uint16_t> samples) {
        put_headers();
        const std::size_t step = m_plan.components;
        const std::size_t pitch = m_plan.width * step;
        const unsigned interval = m_plan.restart_lines == 0 ? m_plan.height : m_plan.restart_lines;
        for (unsigned line = 0; line < m_plan.height; ++line) {
            const bool is_afresh = line % interval == 0;
            if (is_afresh && line != 0)
                put_marker(0xd0 + (line / interval - 1) % 8);
            for (std::size_t at = 0; at < pitch; ++at) {
                const std::uint16_t* const sample = &samples[line * pitch + at];
                const int left = at < step ? 1 << (m_plan.precision - 1) : *(sample - step);
                const int above = is_afresh ? left : *(sample - pitch);
                const bool has_all = at >= step && !is_afresh;
                const int predicted = has_all ? predict(left, above, *(sample - pitch - step)) : above;
                put_difference(m_plan.tables[at % step % m_plan.tables.size()], *sample - predicted);
            }
        }
        put_marker(0xd9);
        return m_bytes;
    }

private:
    [[nodiscard]] int predict(int left, int above, int corner) const {
        const int predictions[] = {left,
                                   above,
                                   corner,
                                   left + above - corner,
                                   left + ((above - corner) >> 1),
                                   above + ((left - corner) >> 1),
                                   (left + above) >> 1};
        return predictions[m_plan.predictor - 1];
    }

    void put_headers() {
        const unsigned interval = m_plan.restart_lines * m_plan.width;
        std::string frame = bytes({m_plan.precision, m_plan.height >> 8, m_plan.height, m_plan.width >> 8,
                                   m_plan.width, m_plan.components});
        std::string scan = bytes({m_plan.components});
        for (std::size_t c = 0; c < m_plan.components; ++c) {
            frame += bytes({c + 1, 0x11, 0});
            scan += bytes({c + 1, c % m_plan.tables.size() << 4});
        }
        m_bytes = bytes({0xff, 0xd8});
        for (std::size_t at = 0; at < m_plan.tables.size(); ++at)
            put_segment(0xc4, bytes({at}) + m_plan.tables[at].segment);
        put_segment(0xc3, frame);
        put_segment(0xdd, bytes({interval >> 8, interval}));
        put_segment(0xda, scan + bytes({m_plan.predictor, 0, 0}));
    }

    void put_segment(std::size_t marker, const std::string& content) {
        m_bytes += bytes({0xff, marker, 0, content.size() + 2}) + content;
    }

    void put_difference(const code_table& table, int difference) {
        const auto wrapped = static_cast<std::int16_t>(difference);
        const auto size = static_cast<unsigned>(std::bit_width(static_cast<unsigned>(std::abs(wrapped))));
        put_bits(table.codes[size], table.lengths[size]);
        put_bits(static_cast<unsigned>(wrapped < 0 ? wrapped - 1 : wrapped), size % 16);
    }

    void put_bits(unsigned value, unsigned count) {
        while (count-- > 0) {
            m_byte = m_byte << 1 | (value >> count & 1U);
            if (++m_n_bits % 8 != 0)
                continue;
            m_bytes += m_byte % 256 == 0xff ? bytes({0xff, 0}) : bytes({m_byte});
        }
    }

    void put_marker(unsigned marker) {
        while (m_n_bits % 8 != 0)
            put_bits(1, 1);
        m_bytes += bytes({0xff, marker});
    }

    static std::string bytes(std::initializer_list<std::size_t> values) {
        std::string text;
        for (const std::size_t value : values)
            text.push_back(static_cast<char>(value));
        return text;
    }

    const jpeg_plan& m_plan;
    std::string m_bytes;
    unsigned m_byte = 0; // the last eight bits
    unsigned m_n_bits = 0;
};
