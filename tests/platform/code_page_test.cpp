#include "platform/code_page.h"
#include "tests/support/shown_text.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

template <typename From, typename To>
using conversion_t = int (*)(const From*, std::span<To>) noexcept;

// Expects the text's other form, from a query of its size and a target that just holds it, and that no
// smaller target is taken.
template <typename From, typename To>
void check(conversion_t<From, To> convert, const std::basic_string<From>& text,
           const std::basic_string<To>& want) {
    SCOPED_TRACE(plain(text.c_str()));
    const std::size_t size = want.size() + 1;
    EXPECT_EQ(convert(text.c_str(), {}), static_cast<int>(size));
    std::vector<To> target(size, To('?'));
    EXPECT_EQ(convert(text.c_str(), target), static_cast<int>(size));
    EXPECT_EQ(plain(target.data()), plain(want.c_str()));
    EXPECT_EQ(target.back(), To(0));
    for (std::size_t n = 1; n < size; ++n) {
        std::vector<To> small(n);
        EXPECT_EQ(convert(text.c_str(), small), 0) << n;
    }
}

using row_t = std::pair<const char*, std::u16string_view>;

TEST(code_page, well_formed_texts_go_both_ways) {
    const row_t rows[] = {{"", u""},
                          {"a\x7F", u"a\u007F"},
                          {"\xC2\x80\xDF\xBF", u"\u0080\u07FF"},
                          {"\xE0\xA0\x80\xEF\xBF\xBF", u"\u0800\uFFFF"},
                          {"\xED\x9F\xBF\xEE\x80\x80", u"\uD7FF\uE000"},
                          {"\xEF\xBB\xBFx", u"\uFEFFx"},
                          {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", u"\U00010000\U0010FFFF"},
                          {"caf\xC3\xA9 \xF0\x9F\x93\xB7!", u"caf\u00E9 \U0001F4F7!"}};
    for (const auto& [utf8, utf16] : rows) {
        check<char, utf16_t>(&platform::utf8_to_utf16, utf8, units(utf16));
        check<utf16_t, char>(&platform::utf16_to_utf8, units(utf16), utf8);
    }
}

TEST(code_page, a_lone_surrogate_becomes_one_replacement_character) {
    const row_t rows[] = {{"\xEF\xBF\xBD", u"\xD800"},
                          {"\xEF\xBF\xBD\xEF\xBF\xBD", u"\xDFFF\xD800"},
                          {"\xEF\xBF\xBD\xF0\x90\x80\x80", u"\xD800\xD800\xDC00"},
                          {"\xEF\xBF\xBD\xE2\x82\xAC", u"\xD83D\u20AC"}};
    for (const auto& [utf8, utf16] : rows)
        check<utf16_t, char>(&platform::utf16_to_utf8, units(utf16), utf8);
}

TEST(code_page, each_maximal_malformed_piece_becomes_one_replacement_character) {
    const row_t rows[] = {
        {"\x80", u"\uFFFD"},
        {"\xC1\xBF", u"\uFFFD\uFFFD"},
        {"\xF5\x80\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"\xE2\x82", u"\uFFFD"}, // truncated
        {"\xE2\x82(", u"\uFFFD("},
        {"\xF0\x9F\xC3\xA9", u"\uFFFD\u00E9"},
        {"a\xF1\x80\x80\xE1\x80\xC2z\x80-\x80\xBF.", u"a\uFFFD\uFFFD\uFFFDz\uFFFD-\uFFFD\uFFFD."}};
    for (const auto& [utf8, utf16] : rows)
        check<char, utf16_t>(&platform::utf8_to_utf16, utf8, units(utf16));
}

TEST(code_page, a_null_text_cannot_be_converted) {
    char byte = '?';
    utf16_t unit = u'?';
    EXPECT_EQ(platform::utf16_to_utf8(nullptr, {}), 0);
    EXPECT_EQ(platform::utf8_to_utf16(nullptr, {}), 0);
    EXPECT_EQ(platform::utf16_to_utf8(nullptr, std::span(&byte, 1)), 0);
    EXPECT_EQ(platform::utf8_to_utf16(nullptr, std::span(&unit, 1)), 0);
}

} // namespace
