#include "platform/code_page.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace platform {

namespace {

constexpr char32_t replacement_character = 0xFFFD;

constexpr bool is_high_surrogate(char32_t unit) noexcept {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

constexpr bool is_low_surrogate(char32_t unit) noexcept {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

// Takes the next code point off a zero-terminated UTF-16 text that is not at its end.
char32_t take_code_point(const utf16_t*& text) noexcept {
    const char32_t unit = *text++;
    if (is_high_surrogate(unit) && is_low_surrogate(*text))
        return 0x10000 + ((unit - 0xD800) << 10) + (static_cast<char32_t>(*text++) - 0xDC00);
    return is_high_surrogate(unit) || is_low_surrogate(unit) ? replacement_character : unit;
}

// What a UTF-8 lead byte announces. The range of the byte behind it excludes overlong forms, surrogates and
// values above U+10FFFF (The Unicode Standard, table 3-7).
struct sequence_t {
    int n_continuations;
    char32_t lead_bits;
    unsigned char second_min = 0x80;
    unsigned char second_max = 0xBF;
};

constexpr sequence_t announced_by(unsigned char lead) noexcept {
    if (lead < 0x80)
        return {0, lead};
    if (lead >= 0xC2 && lead <= 0xDF)
        return {1, lead & 0x1Fu};
    if (lead >= 0xE0 && lead <= 0xEF)
        return {2, lead & 0x0Fu, static_cast<unsigned char>(lead == 0xE0 ? 0xA0 : 0x80),
                static_cast<unsigned char>(lead == 0xED ? 0x9F : 0xBF)};
    if (lead >= 0xF0 && lead <= 0xF4)
        return {3, lead & 0x07u, static_cast<unsigned char>(lead == 0xF0 ? 0x90 : 0x80),
                static_cast<unsigned char>(lead == 0xF4 ? 0x8F : 0xBF)};
    return {0, replacement_character};
}

// Takes the next code point off a zero-terminated UTF-8 text that is not at its end.
char32_t take_code_point(const char*& text) noexcept {
    const sequence_t sequence = announced_by(static_cast<unsigned char>(*text++));
    char32_t code_point = sequence.lead_bits;
    unsigned char lowest = sequence.second_min;
    unsigned char highest = sequence.second_max;
    for (int i = 0; i < sequence.n_continuations; ++i) {
        const auto byte = static_cast<unsigned char>(*text);
        if (byte < lowest || byte > highest)
            return replacement_character;
        code_point = (code_point << 6) | (byte & 0x3Fu);
        lowest = 0x80;
        highest = 0xBF;
        ++text;
    }
    return code_point;
}

// The units of one code point in the target encoding.
template <typename Unit>
struct encoded_t {
    std::array<Unit, 4> units;
    std::size_t n_units;
};

void encode(char32_t c, encoded_t<char>& out) noexcept {
    const auto byte = [](char32_t value) { return static_cast<char>(static_cast<unsigned char>(value)); };
    const auto continuation = [&](int shift) { return byte(0x80 | ((c >> shift) & 0x3F)); };
    if (c < 0x80)
        out = {{byte(c)}, 1};
    else if (c < 0x800)
        out = {{byte(0xC0 | (c >> 6)), continuation(0)}, 2};
    else if (c < 0x10000)
        out = {{byte(0xE0 | (c >> 12)), continuation(6), continuation(0)}, 3};
    else
        out = {{byte(0xF0 | (c >> 18)), continuation(12), continuation(6), continuation(0)}, 4};
}

void encode(char32_t c, encoded_t<utf16_t>& out) noexcept {
    if (c < 0x10000)
        out = {{static_cast<utf16_t>(c)}, 1};
    else
        out = {{static_cast<utf16_t>(0xD7C0 + (c >> 10)), static_cast<utf16_t>(0xDC00 + (c & 0x3FF))}, 2};
}

template <typename From, typename To>
int convert(const From* text, std::span<To> target) noexcept {
    if (text == nullptr)
        return 0;
    std::size_t size = 0;
    encoded_t<To> encoded{};
    while (*text != From(0)) {
        encode(take_code_point(text), encoded);
        if (!target.empty()) {
            if (encoded.n_units >= target.size() - size)
                return 0;
            for (std::size_t i = 0; i < encoded.n_units; ++i)
                target[size + i] = encoded.units[i];
        }
        size += encoded.n_units;
    }
    if (!target.empty())
        target[size] = To(0);
    return size < std::numeric_limits<int>::max() ? static_cast<int>(size) + 1 : 0;
}

} // namespace

int utf16_to_utf8(const utf16_t* text, std::span<char> target) noexcept {
    return convert(text, target);
}

int utf8_to_utf16(const char* text, std::span<utf16_t> target) noexcept {
    return convert(text, target);
}

} // namespace platform
