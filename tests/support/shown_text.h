#pragma once

#include <cstdio>
#include <string>

// A text as the tables write it: printable ASCII as it is, other units as <E9> or <20AC>, nothing for null.
[[nodiscard]] std::string plain(const auto& text) {
    std::string result;
    for (const auto* unit = +text; unit != nullptr && *unit != 0; ++unit) {
        const int value = *unit & (sizeof *unit == 1 ? 0xFF : 0xFFFF);
        char written[12] = {};
        std::snprintf(written, sizeof written, value >= 0x20 && value < 0x7F ? "%c" : "<%02X>", value);
        result += written;
    }
    return result;
}

// The same with the two empty forms told apart: null, '' and 'abc'.
[[nodiscard]] std::string shown(const auto& text) {
    return +text != nullptr ? '\'' + plain(text) + '\'' : "null";
}
