#include "platform/code_page.h"
#include "tests/support/shown_text.h"

#include <array>
#include <gtest/gtest.h>
#include <utility>

namespace {

TEST(malformed_utf8, each_byte_of_what_can_begin_no_character_is_a_piece) {
    using row_t = std::pair<const char*, const char*>;
    const row_t rows[] = {{"\xE0\x9F\xBF", "<FFFD><FFFD><FFFD>"}, // overlong
                          {"\xF0\x8F\xBF\xBF", "<FFFD><FFFD><FFFD><FFFD>"},
                          {"\xED\xA0\x80", "<FFFD><FFFD><FFFD>"}, // surrogates
                          {"\xED\xBF\xBF", "<FFFD><FFFD><FFFD>"},
                          {"\xF4\x90\x80\x80", "<FFFD><FFFD><FFFD><FFFD>"}}; // above U+10FFFF
    for (const auto& [utf8, want] : rows) {
        std::array<utf16_t, 8> text{};
        EXPECT_GT(platform::utf8_to_utf16(utf8, text), 0);
        EXPECT_EQ(plain(text.data()), want);
    }
}

} // namespace
