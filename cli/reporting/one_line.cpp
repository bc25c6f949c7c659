#include "cli/reporting/one_line.h"

#include "platform/characters.h"

#include <algorithm>

namespace {

// Where a character begins: 2 for those that may be wide, such as Chinese ones; 0 within a character.
std::size_t columns_of(char unit) noexcept {
    const auto byte = static_cast<unsigned char>(unit);
    if ((byte & 0xc0U) == 0x80U)
        return 0;
    return byte >= 0xe1U ? 2 : 1;
}

} // namespace

std::string one_line(std::string_view text) {
    std::string line(text);
    std::ranges::replace_if(
        line, [](char c) { return platform::is_control(c); }, '?');
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
