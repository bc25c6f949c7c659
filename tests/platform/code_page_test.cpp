#include "platform/code_page.h"
#include "tests/support/shown_text.h"

#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace {

// Expects the text's other form, from a query of its size and a target that just holds it, and that no
// smaller target is taken and no null text.
template <typename From, typename To>
void check(int (*convert)(const From*, std::span<To>) noexcept, const std::basic_string<From>& text,
           const std::basic_string<To>& want) {
    SCOPED_TRACE(plain(text.c_str()));
    const auto size = static_cast<int>(want.size() + 1);
    EXPECT_EQ(convert(text.c_str(), {}), size);
    std::vector<To> target(want.size() + 1, To('?'));
    EXPECT_EQ(convert(text.c_str(), target), size);
    EXPECT_EQ(plain(target.data()), plain(want.c_str()));
    EXPECT_EQ(target.back(), To(0));
    EXPECT_EQ(convert(nullptr, {}) + convert(nullptr, target), 0);
    for (std::size_t n = 1; n <= want.size(); ++n)
        EXPECT_EQ(convert(text.c_str(), {std::make_unique<To[]>(n).get(), n}), 0) << n;
}

using row_t = std::pair<const char*, const utf16_t*>;

TEST(code_page, well_formed_texts_go_both_ways) {
    const row_t rows[] = {{"", UTF16("")},
                          {"a\x7F", UTF16("a\u007F")},
                          {"\xC2\x80\xDF\xBF", UTF16("\u0080\u07FF")},
                          {"\xE0\xA0\x80\xEF\xBF\xBF", UTF16("\u0800\uFFFF")},
                          {"\xED\x9F\xBF\xEE\x80\x80", UTF16("\uD7FF\uE000")},
                          {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", UTF16("\U00010000\U0010FFFF")}};
    for (const auto& [utf8, utf16] : rows) {
        check<char, utf16_t>(&platform::utf8_to_utf16, utf8, utf16);
        check<utf16_t, char>(&platform::utf16_to_utf8, utf16, utf8);
    }
}

TEST(code_page, each_maximal_malformed_piece_becomes_one_replacement_character) {
    const row_t surrogates[] = {{"\xEF\xBF\xBD\xEF\xBF\xBD", UTF16("\xDFFF\xD800")},
                                {"\xEF\xBF\xBD\xF0\x90\x80\x80", UTF16("\xD800\xD800\xDC00")},
                                {"\xEF\xBF\xBD.", UTF16("\xD83D.")}};
    for (const auto& [utf8, utf16] : surrogates)
        check<utf16_t, char>(&platform::utf16_to_utf8, utf16, utf8);
    const row_t rows[] = {
        {"\xC1\xBF", UTF16("\uFFFD\uFFFD")},
        {"\xF5\x80\x80\x80", UTF16("\uFFFD\uFFFD\uFFFD\uFFFD")},
        {"\xF0\x9F\xC3\xA9\xE2\x82", UTF16("\uFFFD\u00E9\uFFFD")}, // truncated
        {"a\xF1\x80\x80\xE1\x80\xC2z\x80-\x80\xBF.", UTF16("a\uFFFD\uFFFD\uFFFDz\uFFFD-\uFFFD\uFFFD.")}};
    for (const auto& [utf8, utf16] : rows)
        check<char, utf16_t>(&platform::utf8_to_utf16, utf8, utf16);
}

} // namespace
