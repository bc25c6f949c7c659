#include "cli/reporting/one_line.h"

#include "platform/characters.h"
#include "platform/utf8.h"

namespace {

// Those from U+0080 to U+009F some terminals take for the escape sequences that other characters begin.
bool is_control(char32_t c) noexcept {
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
        const std::string_view from_here = text;
        const auto character = platform::take_code_point(text);
        const auto taken = from_here.substr(0, from_here.size() - text.size());
        if (!character)
            line.append(taken.size(), '?');
        else if (is_control(*character))
            line += '?';
        else
            line += taken;
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
