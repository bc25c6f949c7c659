#include "platform/code_page.h"

#include "platform/utf8.h"

#include <array>
#include <cstddef>
#include <limits>
#include <string_view>

namespace platform {

namespace {

constexpr char32_t replacement_character = 0xFFFD;

constexpr bool is_high_surrogate(char32_t unit) noexcept {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

constexpr bool is_low_surrogate(char32_t unit) noexcept {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

// These take the next code point off a text that is not empty.

char32_t take_next(std::basic_string_view<utf16_t>& text) noexcept {
    const char32_t unit = text.front();
    text.remove_prefix(1);
    const char32_t next = text.empty() ? 0 : text.front();
    if (is_high_surrogate(unit) && is_low_surrogate(next)) {
        text.remove_prefix(1);
        return 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00);
    }
    return is_high_surrogate(unit) || is_low_surrogate(unit) ? replacement_character : unit;
}

char32_t take_next(std::string_view& text) noexcept {
    return take_code_point(text).value_or(replacement_character);
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
    for (std::basic_string_view<From> left(text); !left.empty();) {
        encode(take_next(left), encoded);
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
