#include "tests/support/shown_text.h"

#include <cstdio>
#include <type_traits>

namespace {

template <typename Unit>
std::string written(const Unit* text) {
    std::string result;
    for (; text != nullptr && *text != Unit(0); ++text) {
        const unsigned int value = static_cast<std::make_unsigned_t<Unit>>(*text);
        char number[12] = {};
        std::snprintf(number, sizeof number, "<%02X>", value);
        if (value >= 0x20 && value < 0x7F)
            result += static_cast<char>(value);
        else
            result += number;
    }
    return result;
}

template <typename Unit>
std::string quoted(const Unit* text) {
    if (text == nullptr)
        return "null";
    std::string result = written(text);
    result.insert(0, 1, '\'');
    result.push_back('\'');
    return result;
}

} // namespace

std::string plain(const char* text) {
    return written(text);
}

std::string plain(const utf16_t* text) {
    return written(text);
}

std::string shown(const char* text) {
    return quoted(text);
}

std::string shown(const utf16_t* text) {
    return quoted(text);
}

std::string bytes_of(const ZData& data) {
    return {data.inq_data(), data.inq_data() + data.inq_n_bytes()};
}

ZUString wide(const char* ascii) {
    if (ascii == nullptr)
        return {};
    const std::string_view text(ascii);
    return ZUString(std::basic_string<utf16_t>(text.begin(), text.end()).c_str());
}

std::basic_string<utf16_t> units(std::u16string_view text) {
    return {text.begin(), text.end()};
}
