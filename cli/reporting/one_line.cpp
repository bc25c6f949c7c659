#include "cli/reporting/one_line.h"

#include "platform/characters.h"

namespace {

// U+0080 to U+009F: terminals take some of them for the escape sequences that other characters begin.
bool begins_with_high_control(std::string_view text) noexcept {
    return text.size() > 1 && text[0] == '\xC2' && static_cast<unsigned char>(text[1]) >= 0x80U &&
           static_cast<unsigned char>(text[1]) < 0xa0U;
}

// Where a character begins: 2 for those that may be wide, such as Chinese ones; 0 within a character.
std::size_t columns_of(char unit) noexcept {
    const auto byte = static_cast<unsigned char>(unit);
    if ((byte & 0xc0U) == 0x80U)
        return 0;
    return byte >= 0xe1U ? 2 : 1;
}

} // namespace

std::string one_line(std::string_view text) {
    std::string line;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool is_high_control = begins_with_high_control(text.substr(i));
        line += is_high_control || platform::is_control(text[i]) ? '?' : text[i];
        i += is_high_control ? 1 : 0;
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
