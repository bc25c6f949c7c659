#include "cli/reporting/one_line.h"

#include "platform/characters.h"

#include <algorithm>
#include <array>
#include <bit>

namespace {

// What a text begins with: a character, or nothing that is one in UTF-8.
struct character_t {
    char32_t code_point = 0;
    std::size_t bytes = 0; // 0: none
};

constexpr char32_t highest_code_point = 0x10FFFF;
// By the number of bytes: those below have fewer.
constexpr std::array<char32_t, 5> lowest_code_points = {0, 0, 0x80, 0x800, 0x10000};

character_t first_character(std::string_view text) noexcept {
    const auto lead = static_cast<unsigned char>(text.front());
    const auto ones = static_cast<unsigned>(std::countl_one(lead));
    const std::size_t bytes = std::max(ones, 1U);
    if (ones == 1 || bytes >= lowest_code_points.size() || bytes > text.size())
        return {};
    char32_t code_point = lead & (0x7fU >> ones);
    for (const char unit : text.substr(1, bytes - 1)) {
        const auto byte = static_cast<unsigned char>(unit);
        if ((byte & 0xc0U) != 0x80U)
            return {};
        code_point = (code_point << 6U) | (byte & 0x3fU);
    }
    const bool is_surrogate = code_point >= 0xD800 && code_point <= 0xDFFF;
    if (is_surrogate || code_point < lowest_code_points[bytes] || code_point > highest_code_point)
        return {};
    return {code_point, bytes};
}

// Those from U+0080 to U+009F some terminals take for the escape sequences that other characters begin.
bool is_control(character_t character) noexcept {
    const char32_t c = character.code_point;
    return c < 0x80 ? platform::is_control(static_cast<char>(c)) : c < 0xA0;
}

// Where a character begins: 2 for those that may be wide, such as Chinese ones; 0 within a character.
std::size_t columns_of(char unit) noexcept {
    const auto byte = static_cast<unsigned char>(unit);
    if ((byte & 0xc0U) == 0x80U)
        return 0;
    return byte >= 0xe1U ? 2 : 1;
}

} // namespace

// A byte that belongs to no character may be such a control too, where the terminal does not expect UTF-8.
std::string one_line(std::string_view text) {
    std::string line;
    while (!text.empty()) {
        const character_t character = first_character(text);
        if (character.bytes == 0 || is_control(character))
            line += '?';
        else
            line += text.substr(0, character.bytes);
        text.remove_prefix(std::max<std::size_t>(character.bytes, 1));
    }
    return line;
}

std::string_view cut_to_columns(std::string_view text, std::size_t columns) noexcept {
    std::size_t used = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        used += columns_of(text[i]);
        if (used > columns)
            return text.substr(0, i);
    }
    return text;
}
