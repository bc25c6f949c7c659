#include "tests/support/shown_text.h"

#include <cstdio>
#include <type_traits>

namespace {

template <typename Unit>
std::string written(const Unit* text) {
    std::string result;
    for (; text != nullptr && *text != Unit(0); ++text) {
        const int value = static_cast<std::make_unsigned_t<Unit>>(*text);
        char unit[12] = {};
        std::snprintf(unit, sizeof unit, value >= 0x20 && value < 0x7F ? "%c" : "<%02X>", value);
        result += unit;
    }
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
    return text != nullptr ? '\'' + written(text) + '\'' : "null";
}

std::string shown(const utf16_t* text) {
    return text != nullptr ? '\'' + written(text) + '\'' : "null";
}

std::string bytes_of(const ZData& data) {
    return {data.inq_data(), data.inq_data() + data.inq_n_bytes()};
}
