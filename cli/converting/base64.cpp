#include "cli/converting/base64.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace {

constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Four characters for up to three bytes.
void append_group(std::string& text, std::span<const unsigned char> bytes) {
    std::uint32_t group = 0;
    for (std::size_t i = 0; i < 3; ++i)
        group = group << 8 | (i < bytes.size() ? bytes[i] : 0U);
    for (std::size_t i = 0; i < 4; ++i)
        text += i <= bytes.size() ? digits[group >> (18 - 6 * i) & 0x3fU] : '=';
}

} // namespace

std::string base64_of(std::span<const unsigned char> bytes) {
    std::string text;
    for (; !bytes.empty(); bytes = bytes.subspan(std::min<std::size_t>(bytes.size(), 3)))
        append_group(text, bytes.first(std::min<std::size_t>(bytes.size(), 3)));
    return text;
}
