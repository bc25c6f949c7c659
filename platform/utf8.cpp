#include "platform/utf8.h"

namespace platform {
namespace {

// What a lead byte announces. The range of the byte after it excludes overlong forms, surrogates and values
// above U+10FFFF (The Unicode Standard, table 3-7).
struct sequence_t {
    int n_continuations;
    char32_t lead_bits;
    unsigned char second_min = 0x80;
    unsigned char second_max = 0xBF;
};

constexpr std::optional<sequence_t> announced_by(unsigned char lead) noexcept {
    if (lead < 0x80)
        return sequence_t{0, lead};
    if (lead >= 0xC2 && lead <= 0xDF)
        return sequence_t{1, lead & 0x1Fu};
    if (lead >= 0xE0 && lead <= 0xEF)
        return sequence_t{2, lead & 0x0Fu, static_cast<unsigned char>(lead == 0xE0 ? 0xA0 : 0x80),
                          static_cast<unsigned char>(lead == 0xED ? 0x9F : 0xBF)};
    if (lead >= 0xF0 && lead <= 0xF4)
        return sequence_t{3, lead & 0x07u, static_cast<unsigned char>(lead == 0xF0 ? 0x90 : 0x80),
                          static_cast<unsigned char>(lead == 0xF4 ? 0x8F : 0xBF)};
    return {};
}

} // namespace

std::optional<char32_t> take_code_point(std::string_view& text) noexcept {
    const auto sequence = announced_by(static_cast<unsigned char>(text.front()));
    text.remove_prefix(1);
    if (!sequence)
        return {};
    char32_t code_point = sequence->lead_bits;
    unsigned char lowest = sequence->second_min;
    unsigned char highest = sequence->second_max;
    for (int i = 0; i < sequence->n_continuations; ++i) {
        const auto byte = static_cast<unsigned char>(text.empty() ? '\0' : text.front());
        if (byte < lowest || byte > highest)
            return {};
        code_point = (code_point << 6) | (byte & 0x3Fu);
        lowest = 0x80;
        highest = 0xBF;
        text.remove_prefix(1);
    }
    return code_point;
}

} // namespace platform
