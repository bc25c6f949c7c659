#include "sdk/open/identifying/bounded_datastream.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

using sdk_open::bounded_datastream;

std::span<const std::byte> bytes_of(std::string_view text) {
    return std::as_bytes(std::span(text));
}

// What is beyond the bytes that may be written stays.
TEST(bounded_datastream, ends_lines_where_there_is_room) {
    const struct {
        std::string text;
        int size;
        std::string line; // without the zero after it
        INT64 position;
    } rows[] = {
        {"ab\ncd", 9, "ab\n", 3}, {"ab\ncd", 3, "ab", 2}, {"ab\ncd", 4, "ab\n", 3},
        {"abcd", 4, "abc", 3},    {"ab", 9, "ab", 2},     {"ab", 1, "", 0},
    };
    for (const auto& row : rows) {
        bounded_datastream stream(bytes_of(row.text), {});
        std::string line(16, '#');
        EXPECT_EQ(stream.gets(line.data(), row.size), line.data());
        EXPECT_EQ(line, row.line + '\0' + std::string(15 - row.line.size(), '#'));
        EXPECT_EQ(stream.tell(), row.position);
    }
    bounded_datastream stream(bytes_of("a"), {});
    char untouched = '#';
    EXPECT_EQ(stream.gets(&untouched, 0), nullptr);
    EXPECT_EQ(stream.get_char(), 'a');
    EXPECT_EQ(stream.gets(&untouched, 1), nullptr);
    EXPECT_EQ(untouched, '#');
}

// The text goes on beyond the bytes of the stream.
TEST(bounded_datastream, reads_no_number_beyond_its_end) {
    constexpr std::string_view text = "12\t -345 67";
    bounded_datastream stream(bytes_of(text).first(text.size() - 1), {});
    int number = 0;
    for (const int want : {12, -345, 6}) {
        EXPECT_EQ(stream.scanf_one("%d", &number), 1);
        EXPECT_EQ(number, want);
    }
    EXPECT_NE(stream.eof(), 0);
    EXPECT_LT(stream.scanf_one("%d", &number), 1);
    EXPECT_EQ(stream.get_char(), EOF);
}

TEST(bounded_datastream, stays_within_its_bytes) {
    bounded_datastream stream(bytes_of("abcde"), {});
    char target[] = "####";
    EXPECT_EQ(stream.read(target, 2, 2), 2);
    EXPECT_EQ(stream.read(target, 2, 100), 0); // but the rest comes
    EXPECT_STREQ(target, "ebcd");
    EXPECT_EQ(stream.read(target, 0, 9), 0);
    const struct {
        INT64 offset;
        int origin;
        INT64 position;
    } rows[] = {{3, SEEK_SET, 3},  {-1, SEEK_CUR, 2}, {-9, SEEK_CUR, 0},        {9, SEEK_SET, 5},
                {-2, SEEK_END, 3}, {9, SEEK_CUR, 5},  {INT64_MAX, SEEK_END, 5}, {INT64_MIN, SEEK_END, 0}};
    for (const auto& [offset, origin, position] : rows) {
        stream.seek(offset, origin);
        EXPECT_EQ(stream.tell(), position) << offset;
    }
}

} // namespace
