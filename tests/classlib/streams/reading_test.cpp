#include "classlib/streams/ZData.h"
#include "classlib/streams/ZMemoryRStream.h"
#include "classlib/streams/ZRStream.h"
#include "classlib/strings/ZString.h"
#include "classlib/strings/ZUString.h"
#include "tests/support/allocation_meter.h"
#include "tests/support/block_stream.h"
#include "tests/support/recording_reporter.h"
#include "tests/support/shown_text.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <new>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

template <typename T>
void say(std::ostream& out, const T& value) {
    if constexpr (std::is_same_v<T, ZString> || std::is_same_v<T, ZUString>)
        out << shown(value);
    else if constexpr (std::is_same_v<T, ZData>)
        out << '[' << bytes_of(value) << ']';
    else
        out << +value;
}

// Values as the tables write them: 1 -2 'abc'.
template <typename First, typename... Rest>
std::string said(const First& first, const Rest&... rest) {
    std::ostringstream out;
    say(out, first);
    ((out << ' ', say(out, rest)), ...);
    return out.str();
}

// Each reads into a target that holds something already, and says the answer and the target.
template <typename T, bool (ZRStream::*Read)(T&)>
std::string read(ZRStream& in) {
    T value = 77;
    const bool is_read = (in.*Read)(value);
    return said(is_read, value);
}

template <typename T>
std::string extract(ZRStream& in) {
    T value = 77;
    in >> value;
    return said(value);
}

std::string extract_flags(ZRStream& in) {
    bool first = true;
    bool second = false;
    in >> first >> second;
    return said(first, second);
}

std::string extract_token(ZRStream& in) {
    ZString token("old");
    in >> token;
    return said(token);
}

std::string read_name(ZRStream& in) {
    ZString name("old");
    const int c = in.read_name(name);
    return said(c, name);
}

template <const auto& Stops>
std::string read_until(ZRStream& in) {
    ZString text("old");
    const int c = in.read_until(Stops, text);
    return said(c, text);
}

std::string read_line(ZRStream& in) {
    ZString line("old");
    const bool is_read = in.read_line(line);
    return said(is_read, line);
}

std::string read_wide_line(ZRStream& in) {
    ZUString line("old");
    const bool is_read = in.read_wide_line(line);
    return said(is_read, line);
}

template <bool CountsLines>
std::string read_cstring(ZRStream& in) {
    ZString text("old");
    const bool is_read = in.read_cstring(text, CountsLines);
    return said(is_read, text);
}

std::string read_string(ZRStream& in) {
    ZString text("old");
    const bool is_read = text.read_from(in);
    return said(is_read, text);
}

template <int N, bool CountsLines = false>
std::string read_bytes(ZRStream& in) {
    std::string bytes(8, '.');
    int got = 77;
    const bool is_read = in.read_bytes(bytes.data(), N, CountsLines, &got);
    return said(is_read, got) + ' ' + bytes;
}

std::string read_data(ZRStream& in) {
    ZData data("old");
    const bool is_read = in.read_data(data, true);
    return said(is_read, data);
}

std::string read_block(ZRStream& in) {
    ZData data("old");
    const bool is_read = data.read(in);
    return said(is_read, data);
}

std::string read_all(ZRStream& in) {
    ZData data("old");
    const bool is_read = in.read_all(data);
    return said(is_read, data);
}

std::string read_rest_twice(ZRStream& in) {
    in.get();
    const std::string rest = read_all(in);
    return rest + ' ' + read_all(in);
}

template <int N>
std::string skip(ZRStream& in) {
    return said(in.skip(N));
}

template <int N>
std::string peek_bytes(ZRStream& in) {
    std::string bytes(4, '.');
    const int n = in.peek_bytes(bytes.data(), N);
    return said(n) + ' ' + bytes;
}

using read_t = std::string (*)(ZRStream& in);

TEST(binary_input, values_are_whole_or_nothing_wherever_blocks_end) {
    struct row_t {
        std::string_view bytes;
        read_t read_value;
        const char* want;
    };
    constexpr read_t packed = &read<unsigned int, &ZRStream::read_packed_int>;
    constexpr row_t rows[] = {
        {"\xFE"sv, &read<unsigned char, &ZRStream::read_byte>, "1 254"},
        {"\xFE"sv, &read<unsigned char, &ZRStream::read_uint8>, "1 254"},
        {"\xFF\xFE"sv, &read<short, &ZRStream::read_int16>, "1 -2"},
        {"\x12\x34"sv, &read<short, &ZRStream::read_int16>, "1 4660"},
        {"\xFF\xFE"sv, &read<unsigned short, &ZRStream::read_uint16>, "1 65534"},
        {"\x80\0\0\1"sv, &read<int, &ZRStream::read_int32>, "1 -2147483647"},
        {"\xFF\xFF\xFF\xFE"sv, &read<long, &ZRStream::read_int32>, "1 -2"},
        {"\0\0\1\0"sv, &read<unsigned int, &ZRStream::read_uint32>, "1 256"},
        {"\xFF\xFF\xFF\xFE"sv, &read<unsigned long, &ZRStream::read_uint32>, "1 4294967294"},
        {"\x3F\x80\0\0"sv, &read<float, &ZRStream::read_float>, "1 1"},
        {"\xBD\xCC\xCC\xCD"sv, &read<float, &ZRStream::read_float>, "1 -0.1"},
        {"\x05"sv, packed, "1 5"},
        {"\x7F"sv, packed, "1 127"},
        {"\x81\x2C"sv, packed, "1 300"},
        {"\x80\x05"sv, packed, "1 5"},
        {"\xBF\xFF"sv, packed, "1 16383"},
        {"\xC0\0\0\0"sv, packed, "1 0"},
        {"\xC0\0\x40\0"sv, packed, "1 16384"},
        {"\xFF\xFF\xFF\xFF"sv, packed, "1 1073741823"},
    };
    for (const row_t& row : rows) {
        for (std::size_t length = 0; length <= row.bytes.size(); ++length) {
            for (std::size_t block_size = 1; block_size <= length + 1; ++block_size) {
                SCOPED_TRACE(testing::Message() << &row - rows << ": " << length << " in " << block_size);
                const bool is_whole = length == row.bytes.size();
                block_stream in(row.bytes.substr(0, length), {block_size});
                EXPECT_EQ(row.read_value(in), is_whole ? row.want : "0 77");
                EXPECT_EQ(in.inq_error(), is_whole ? rstreamerr_ok : rstreamerr_end_of_data);
                EXPECT_EQ(in.get(), -1);
                EXPECT_EQ(row.read_value(in), "0 77");
                EXPECT_EQ(in.inq_error(), rstreamerr_end_of_data);
            }
        }
    }
}

// Each row runs with blocks of every size.
struct row_t {
    std::string_view bytes;
    read_t read_value;
    std::string want;
    const char* rest; // what is left, while there is no error
    rstreamerr_t error = rstreamerr_ok;
};

void check(const row_t* rows, std::size_t n_rows) {
    for (const row_t* row = rows; row != rows + n_rows; ++row) {
        for (std::size_t block_size = 1; block_size <= row->bytes.size() + 1; ++block_size) {
            SCOPED_TRACE(testing::Message() << '\'' << row->bytes << "' in blocks of " << block_size);
            block_stream in(row->bytes, {block_size});
            EXPECT_EQ(row->read_value(in), row->want);
            EXPECT_EQ(in.inq_error(), row->error);
            std::string rest;
            for (int c = in.get(); c >= 0; c = in.get())
                rest += static_cast<char>(c);
            EXPECT_EQ(rest, row->rest);
        }
    }
}

TEST(binary_input, bytes_and_texts) {
    const row_t rows[] = {
        {"ab\0c"sv, &read_cstring<false>, "1 'ab'", "c"},
        {"\0c"sv, &read_cstring<false>, "1 ''", "c"},
        {"ab"sv, &read_cstring<false>, "0 'old'", "", rstreamerr_end_of_data},
        {"ab\0c"sv, &read_string, "1 'ab'", "c"},
        {"\0c"sv, &read_string, "1 ''", "c"},
        {"ab"sv, &read_string, "0 'ab'", "", rstreamerr_end_of_data},
        {""sv, &read_string, "0 null", "", rstreamerr_end_of_data},
        {"abcdef"sv, &read_bytes<5>, "1 5 abcde...", "f"},
        {"abc"sv, &read_bytes<5>, "0 3 abc.....", "", rstreamerr_end_of_data},
        {"a"sv, &read_bytes<0>, "1 0 ........", "a"},
        {"a"sv, &read_bytes<-1>, "1 0 ........", "a"},
        {"abcd"sv, &read_data, "1 [abc]", "d"},
        {"abc"sv, &skip<2>, "1", "c"},
        {"abc"sv, &skip<3>, "1", ""},
        {"abc"sv, &skip<4>, "0", "", rstreamerr_end_of_data},
        {"abc"sv, &skip<0>, "1", "abc"},
        {"abc"sv, &skip<-1>, "1", "abc"},
        {"abc"sv, &skip<INT_MAX>, "0", "", rstreamerr_end_of_data},
        {"\0\0\0\3xyz!"sv, &read_block, "1 [xyz]", "!"},
        {"\0\0\0\0!"sv, &read_block, "1 []", "!"},
        {"\0\0\0"sv, &read_block, "0 [old]", "", rstreamerr_end_of_data},
        {"\0\x98\x96\x80!"sv, &read_block, "0 [old]", "!"}, // 10,000,000
        {"\xFF\xFF\xFF\xFF!"sv, &read_block, "0 [old]", "!"},
        {"\x80\0\0\0!"sv, &read_block, "0 [old]", "!"},
        {"abc"sv, &read_all, "1 [abc]", "", rstreamerr_end_of_data},
        {""sv, &read_all, "1 []", "", rstreamerr_end_of_data},
        {"abc"sv, &read_rest_twice, "1 [bc] 1 []", "", rstreamerr_end_of_data},
    };
    check(rows, std::size(rows));
}

TEST(binary_input, a_block_that_is_cut_short_has_its_announced_size) {
    ZMemoryRStream in("\0\x98\x96\x7F"
                      "abc",
                      7); // 9,999,999
    ZData data("old");
    EXPECT_FALSE(data.read(in));
    EXPECT_EQ(data.inq_n_bytes(), 9'999'999);
    data.truncate(3);
    EXPECT_EQ(bytes_of(data), "abc");
    EXPECT_EQ(in.inq_error(), rstreamerr_end_of_data);
}

TEST(binary_input, blocks_are_fetched_when_they_are_needed) {
    block_stream in("abcdefghijkl", {3});
    EXPECT_EQ(in.inq_n_fills(), 0);
    std::string ten(10, '.');
    EXPECT_TRUE(in.read_bytes(ten.data(), 10, false, nullptr));
    EXPECT_EQ(ten, "abcdefghij");
    EXPECT_EQ(in.inq_n_fills(), 4);
    EXPECT_TRUE(in.skip(2));
    EXPECT_EQ(in.inq_n_fills(), 4);

    const std::string bytes = std::string(50'000, 'x') + 'y';
    block_stream large(bytes, {1000});
    EXPECT_TRUE(large.skip(50'000)); // in pieces of its own
    EXPECT_EQ(large.inq_position(), 50'000);
    EXPECT_EQ(large.get(), 'y');
}

TEST(binary_input, peeked_bytes_lie_in_the_current_block) {
    block_stream in("abcdef", {3});
    EXPECT_EQ(peek_bytes<4>(in), "3 abc.");
    EXPECT_EQ(peek_bytes<2>(in), "2 ab..");
    EXPECT_EQ(peek_bytes<0>(in), "0 ....");
    EXPECT_EQ(peek_bytes<-1>(in), "0 ....");
    EXPECT_TRUE(in.skip(2));
    EXPECT_EQ(peek_bytes<2>(in), "1 c...");
    EXPECT_EQ(in.get(), 'c');
    EXPECT_EQ(peek_bytes<3>(in), "3 def.");
    EXPECT_TRUE(in.skip(3));
    EXPECT_EQ(peek_bytes<1>(in), "-1 ....");
    EXPECT_EQ(in.inq_error(), rstreamerr_ok);
}

constexpr const char* no_stops = nullptr;
constexpr const char* colon = ":";
constexpr const char* backslash = "\\";
constexpr const char* e_acute = "\xE9;";

TEST(text_input, numbers) {
    constexpr rstreamerr_t out_of_range = rstreamerr_out_of_range;
    constexpr read_t uint8 = &extract<unsigned char>;
    constexpr read_t int64 = &extract<long long>;
    constexpr read_t uint64 = &extract<unsigned long long>;
    const row_t rows[] = {
        {"  # one\n#\n  42 rest", &extract<int>, "42", " rest"},
        {"0x1F", &extract<int>, "31", ""},
        {"0x1f", &extract<int>, "1", "f"},
        {"0X1F", &extract<int>, "0", "X1F"},
        {"0b1012", &extract<int>, "5", "2"},
        {"017", &extract<int>, "17", ""},
        {"0b", &extract<int>, "0", ""},
        {"0x", &extract<int>, "0", ""},
        {"-0xA", &extract<int>, "-10", ""},
        {"- 5", &extract<int>, "-5", ""},
        {"-# comment\n 5", &extract<int>, "-5", ""},
        {"+7", &extract<int>, "7", ""},
        {"--5", &extract<int>, "0", "-5"},
        {"-", &extract<int>, "0", ""},
        {"x", &extract<int>, "0", "x"},
        {"", &extract<int>, "0", ""},
        {"-5", &extract<unsigned int>, "0", "-5"},
        {"+5", uint64, "0", "+5"},
        {"255", uint8, "255", ""},
        {"300 1", uint8, "44", "", out_of_range},
        {"32767", &extract<short>, "32767", ""},
        {"32768", &extract<short>, "-32768", "", out_of_range},
        {"-32769", &extract<short>, "32767", "", out_of_range},
        {"65535", &extract<unsigned short>, "65535", ""},
        {"65536", &extract<unsigned short>, "0", "", out_of_range},
        {"2147483647", &extract<int>, "2147483647", ""},
        {"2147483648", &extract<int>, "-2147483648", "", out_of_range},
        {"-2147483648", &extract<int>, "-2147483648", ""},
        {"-9223372036854775807", &extract<int>, "1", "", out_of_range},
        {"9223372036854775808", &extract<int>, "0", "", out_of_range},
        {"-2147483648", &extract<long>, "-2147483648", ""},
        {"4294967295", &extract<unsigned int>, "4294967295", ""},
        {"4294967297", &extract<unsigned int>, "1", "", out_of_range},
        {"4294967295", &extract<unsigned long>, "4294967295", ""},
        {"9223372036854775807", int64, "9223372036854775807", ""},
        {"-9223372036854775807", int64, "-9223372036854775807", ""},
        {"-9223372036854775808", int64, "0", "", out_of_range},
        {"18446744073709551615", uint64, "18446744073709551615", ""},
        {"18446744073709551617", uint64, "1", ""},
        {"9223372036854775808", [](auto& in) { return said(in.read_signed()); }, "0", "", out_of_range},
        {"1.5e3x", &extract<double>, "1500", "x"},
        {" #\n-.25 1", &extract<double>, "-0.25", " 1"},
        {"abc", &extract<double>, "0", "abc"},
        {"1.2.3e", &extract<double>, "1.2", ""},
        {"e+-", &extract<double>, "0", ""},
        {"", &extract<double>, "0", ""},
        {"1e999", &extract<double>, "inf", ""},
        {"1e39 ", &extract<float>, "inf", " "},
        {"0.5", &extract<float>, "0.5", ""},
    };
    check(rows, std::size(rows));

    const std::string long_number = std::string(99, '0') + "12"; // of 100 characters a number is read
    const row_t long_row[] = {{long_number, &extract<double>, "1", "2"}};
    check(long_row, 1);
}

TEST(text_input, words_and_lines) {
    const row_t rows[] = {
        {"true", &extract_flags, "1 0", "ue"},
        {" T#\ny ", &extract_flags, "1 1", " "},
        {"Y1", &extract_flags, "1 1", ""},
        {"no", &extract_flags, "0 0", ""},
        {"# only a comment", &extract_flags, "1 0", ""},
        {" \v\f\t\r\n#\nxy", &extract<char>, "120", "y"},
        {" #", &extract<char>, "77", ""},
        {"abc_1+x", &extract_token, "'abc_1'", "+x"},
        {"+x", &extract_token, "'+'", "x"},
        {" #\n9a b", &extract_token, "'9a'", " b"},
        {"\xE9\xE9", &extract_token, "'<E9>'", "\xE9"},
        {"  ", &extract_token, "'old'", ""},
        {"my key = 1", &read_name, "61 'my key '", "= 1"},
        {" #\n a_9\tb", &read_name, "-1 'a_9<09>b'", ""},
        {"a # b", &read_name, "35 'a '", "# b"},
        {"\xE9", &read_name, "233 ''", "\xE9"},
        {"", &read_name, "-1 ''", ""},
        {"a\\:b\\tc:d", &read_until<colon>, "58 'a:b<09>c'", ":d"},
        {" #\\n\\r\\\\\\x", &read_until<colon>, "-1 ' #<0A><0D>\\x'", ""},
        {"ab\\", &read_until<colon>, "-1 'ab'", ""},
        {"", &read_until<colon>, "-1 ''", ""},
        {"a:b", &read_until<no_stops>, "-1 'a:b'", ""},
        {"a\\b", &read_until<backslash>, "92 'a'", "\\b"},
        {"a\xE9", &read_until<e_acute>, "233 'a'", "\xE9"},
        {"a\0b:"sv, &read_until<colon>, "58 'a'", ":"}, // a zero is no stop
        {"ab\r\ncd\n", &read_line, "1 'ab'", "cd\n"},
        {"cd", &read_line, "1 'cd'", ""},
        {"\n\n", &read_line, "1 ''", "\n"},
        {"\r", &read_line, "1 ''", ""},
        {" a\r#b\r\r\nc", &read_line, "1 ' a#b'", "c"},
        {"a\0b\nc"sv, &read_line, "1 'a'", "c"},
        {"",
         [](auto& in) {
             ZString line("old");
             return in.read_line(line) ? "read"s : plain(line);
         },
         "", ""},
        {"ab # c\n x", [](auto& in) { return in.skip_comment(), said(in.peek_non_space()); }, "120", "x"},
        {" # c", [](auto& in) { return said(in.peek_non_space()); }, "-1", ""},
    };
    check(rows, std::size(rows));
}

TEST(text_input, an_unread_zero_is_part_of_the_text) {
    ZMemoryRStream in("a\0b:", 4);
    ZString text;
    EXPECT_EQ(in.read_until(":", text), ':');
    EXPECT_EQ(std::string(text, 4), "a\0b\0"s);
}

TEST(text_input, wide_lines) {
    struct wide_row_t {
        std::string_view bytes;
        const char* lines;
    };
    constexpr wide_row_t rows[] = {
        {"a\0\r\0\n\0b\0"sv, "'a' 'b' "},
        {"a\0\n\0\r\0b\0"sv, "'a' 'b' "},
        {"a\0\r\0b\0\n\0c\0"sv, "'a' 'b' 'c' "},
        {"a\0\r\0\r\0b\0\n\0\n\0"sv, "'a' '' 'b' '' "},
        {"\r\0\n\0\r\0\n\0"sv, "'' '' "},
        {"\r\n\n\r\n\1\r\1"sv, "'<A0D><D0A><10A><10D>' "}, // units that only look like line ends
        {"\x3D\xD8\xF7\xDC\r\0"sv, "'<D83D><DCF7>' "},
        {"a\0\0\0b\0\n\0c\0"sv, "'a' 'c' "},
        {"a\0\n"sv, "'a' "}, // a lone byte
        {"\r"sv, "'' "},
        {""sv, ""},
    };
    for (const wide_row_t& row : rows) {
        for (std::size_t block_size = 2; block_size <= row.bytes.size() + 2; block_size += 2) {
            block_stream in(row.bytes, {block_size});
            std::string lines;
            ZUString line("old");
            while (in.read_wide_line(line))
                lines += shown(line) + ' ';
            EXPECT_EQ(lines, row.lines) << block_size;
            EXPECT_EQ(line.length(), 0);
            EXPECT_EQ(in.inq_error(), rstreamerr_ok);
        }
    }
}

TEST(input, positions_and_lines) {
    struct position_row_t {
        read_t read_value;
        const char* want;
    };
    const position_row_t rows[] = {
        {[](auto&) { return ""s; }, "[0]:1"},
        {[](auto& in) { return in.get(), said(in.get()); }, "[2]:2"},
        {[](auto& in) { return static_cast<void>(in.peek()), in.advance(), said(in.peek()); }, "[1]:1"},
        {[](auto& in) { return in.read_int16(*std::make_unique<short>()), ""s; }, "[2]:1"},
        {&read_bytes<4>, "[4]:1"},
        {&read_bytes<4, true>, "[4]:3"},
        {&read_data, "[3]:2"},
        {&read_cstring<false>, "[7]:1"},
        {&read_cstring<true>, "[7]:4"},
        {&read_string, "[7]:1"},
        {&skip<4>, "[4]:1"},
        {&read_line, "[2]:2"},
        {&read_until<no_stops>, "[8]:4"},
        {&read_name, "[6]:4"},
        {&extract_flags, "[3]:2"},
        {[](auto& in) { return in.skip_comment(), ""s; }, "[2]:2"},
        {&read_all, ""},
    };
    for (const position_row_t& row : rows) {
        block_stream in("a\nb\nc\n\0d"sv, {3});
        row.read_value(in);
        EXPECT_EQ(plain(in.inq_position_text(true)) + plain(in.inq_position_text(false)), row.want);
    }
}

// A source that does what it is told, and lets its protected operations be called.
class scripted_stream final : public ZRStream {
public:
    struct step_t {
        std::string_view block;
        bool answer;
        rstreamerr_t error = rstreamerr_ok;
    };
    explicit scripted_stream(std::vector<step_t> steps) : m_steps(std::move(steps)) {}

    using ZRStream::count_lines;
    using ZRStream::set_buffer;
    using ZRStream::set_error;
    using ZRStream::set_position;

    [[nodiscard]] std::int64_t inq_source_size() const override { return -1; }
    [[nodiscard]] std::size_t inq_n_fills() const noexcept { return m_n_fills; }

private:
    bool fill_buffer(const unsigned char*& block, int& size) override {
        if (m_n_fills == m_steps.size())
            return false;
        const step_t& step = m_steps[m_n_fills++];
        m_block = ZData(step.block.data(), static_cast<int>(step.block.size()));
        block = m_block.inq_data();
        size = m_block.inq_n_bytes();
        set_error(step.error);
        return step.answer;
    }

    std::vector<step_t> m_steps;
    ZData m_block;
    std::size_t m_n_fills = 0;
};

TEST(input, an_error_sticks_and_everything_fails_at_once) {
    struct error_row_t {
        read_t read_value;
        const char* want;
        const char* want_at_end_of_data = want;
    };
    const error_row_t rows[] = {
        {[](auto& in) { return said(in.peek(), in.peek_byte(), in.get(), in.peek_non_space()); },
         "-1 -1 -1 -1"},
        {[](auto& in) { return said(in.at_end(), in.seek(3)); }, "1 -1"},
        {[](auto& in) { return in.advance(), in.skip_space(), in.skip_comment(), ""s; }, ""},
        {[](auto& in) { return said(in.read_signed(), in.read_unsigned(), in.read_real()); }, "0 0 0"},
        {[](auto& in) { return said(in.inq_position_text(true).length()); }, "0"},
        {&read<unsigned char, &ZRStream::read_byte>, "0 77"},
        {&read<short, &ZRStream::read_int16>, "0 77"},
        {&read<unsigned short, &ZRStream::read_uint16>, "0 77"},
        {&read<int, &ZRStream::read_int32>, "0 77"},
        {&read<unsigned int, &ZRStream::read_uint32>, "0 77"},
        {&read<float, &ZRStream::read_float>, "0 77"},
        {&read<unsigned int, &ZRStream::read_packed_int>, "0 77"},
        {&read_bytes<1>, "0 0 ........"},
        {&read_bytes<0>, "0 0 ........"},
        {&read_data, "0 [old]"},
        {&read_block, "0 [old]"},
        {&read_cstring<true>, "0 'old'"},
        {&read_string, "0 null"},
        {&skip<1>, "0"},
        {&skip<0>, "0"},
        {&peek_bytes<2>, "-1 ....", "0 ...."},
        {&read_all, "0 []", "1 []"},
        {&extract_flags, "1 0"},
        {&extract<char>, "77"},
        {&extract_token, "'old'"},
        {&extract<unsigned char>, "77"},
        {&extract<int>, "77"},
        {&extract<unsigned long long>, "77"},
        {&extract<float>, "77"},
        {&extract<double>, "77"},
        {&read_name, "-1 'old'"},
        {&read_until<colon>, "-1 'old'"},
        {&read_line, "0 'old'"},
        {&read_wide_line, "0 'old'"},
    };
    for (const rstreamerr_t error : {rstreamerr_end_of_data, rstreamerr_read_failed, rstreamerr_out_of_range,
                                     rstreamerr_no_memory, rstreamerr_unsupported}) {
        for (const error_row_t& row : rows) {
            SCOPED_TRACE(testing::Message() << "row " << &row - rows << ", error " << error);
            scripted_stream in({{"\n1 \n#:", true}, {"next", true}});
            EXPECT_EQ(in.get(), '\n');
            in.set_error(error);
            in.set_error(rstreamerr_out_of_range);
            in.set_buffer(nullptr, 0);
            in.set_position(3, 4, 5);
            in.count_lines(static_cast<const unsigned char*>(static_cast<const void*>("\n")), 1);
            EXPECT_EQ(row.read_value(in),
                      error == rstreamerr_end_of_data ? row.want_at_end_of_data : row.want);
            EXPECT_EQ(said(in.inq_position(), in.inq_line(), in.inq_n_fills()), "1 1 1");
            EXPECT_EQ(in.inq_error(), error);
        }
    }
}

TEST(input, seeking_is_an_error) {
    ZMemoryRStream in("abc", 3);
    EXPECT_EQ(in.seek(0), -1);
    EXPECT_EQ(in.inq_error(), rstreamerr_unsupported);
}

TEST(input, a_source_that_misbehaves_or_fails_ends_the_data) {
    constexpr rstreamerr_t failed = rstreamerr_read_failed;
    struct source_row_t {
        scripted_stream::step_t second; // after a first block
        read_t read_value;
        const char* want;
        rstreamerr_t error;
    };
    const source_row_t rows[] = {
        {{"", true}, &read_bytes<4>, "0 2 12......", rstreamerr_end_of_data},
        {{"34", false}, &read_bytes<4>, "0 2 12......", rstreamerr_end_of_data},
        {{"34", false}, &extract<int>, "12", rstreamerr_ok},
        {{"", true}, &read_line, "1 '12'", rstreamerr_ok},
        {{"", false, failed}, &read_bytes<4>, "0 2 12......", failed},
        {{"34", false, failed}, &read<int, &ZRStream::read_int32>, "0 77", failed},
        {{"", false, failed}, &read_cstring<false>, "0 'old'", failed},
        {{"", false, failed}, &read_string, "0 '12'", failed},
        {{"", false, failed}, &read_all, "0 [12]", failed},
        {{"", false, failed}, &skip<3>, "0", failed},
    };
    for (const source_row_t& row : rows) {
        SCOPED_TRACE(&row - rows);
        scripted_stream in({{"12", true}, row.second});
        EXPECT_EQ(row.read_value(in), row.want);
        EXPECT_EQ(in.inq_error(), row.error);
        EXPECT_EQ(in.peek(), -1);
    }
}

TEST(input, sources_place_the_cursor) {
    scripted_stream in({{"next", true}});
    const ZData block("abc\n");
    in.set_buffer(block.inq_data(), 4);
    in.set_position(2, INT_MAX - 1, 7);
    EXPECT_EQ(in.get(), 'c');
    EXPECT_EQ(in.get(), '\n');
    EXPECT_EQ(in.inq_position(), INT_MAX); // and no further
    in.count_lines(block.inq_data(), 4);
    EXPECT_EQ(in.inq_line(), 9);
    EXPECT_EQ(in.get(), 'n');
    EXPECT_EQ(in.inq_position(), INT_MAX);
}

TEST(input, advancing_needs_a_byte_under_the_cursor) {
    recording_reporter reporter;
    ZMemoryRStream in("a", 1);
    in.advance();
    EXPECT_EQ(reporter.take_without_lines(), "");
    in.advance();
    EXPECT_EQ(reporter.take_without_lines(), "assertion ZRStream: m_index < m_size;");
    EXPECT_EQ(in.inq_position(), 1);
    EXPECT_EQ(in.peek(), -1);
}

TEST(input, memory_is_a_source) {
    struct memory_row_t {
        const char* bytes;
        int n;
        const char* want;
    };
    for (const memory_row_t& row :
         {memory_row_t{"abc", 2, "1 [ab]"}, {"abc", 0, "1 []"}, {"abc", -1, "1 []"}, {nullptr, 0, "1 []"}}) {
        ZMemoryRStream in(row.bytes, row.n);
        EXPECT_EQ(in.inq_source_size(), std::max(row.n, 0));
        EXPECT_EQ(read_all(in), row.want);
    }
    const ZData data("abc");
    ZMemoryRStream in(data);
    EXPECT_EQ(read_line(in), "1 'abc'");
    in.close();
    EXPECT_TRUE(in.at_end());
}

TEST(input, running_out_of_memory_leaves_the_target_alone) {
    struct memory_row_t {
        std::string_view bytes;
        bool (*read_value)(ZRStream& in, ZString& out);
    };
    constexpr memory_row_t rows[] = {
        {"abc\0"sv, [](auto& in, auto& out) { return in.read_cstring(out, true); }},
        {"abc\0"sv, [](auto& in, auto& out) { return out.read_from(in); }},
        {"abc"sv, [](auto& in, auto& out) { return in >> out, true; }},
        {"+"sv, [](auto& in, auto& out) { return in >> out, true; }},
        {"abc"sv, [](auto& in, auto& out) { return in.read_name(out) == -1; }},
        {"a\\n:"sv, [](auto& in, auto& out) { return in.read_until(":", out) == ':'; }},
        {"abc\r\n"sv, [](auto& in, auto& out) { return in.read_line(out); }},
        {"abc"sv, [](auto& in, auto&) { return in.skip(2); }},
        {"abc"sv,
         [](auto& in, auto&) {
             ZData data;
             return in.read_all(data);
         }},
        {"\0\0\0\1a"sv,
         [](auto& in, auto&) {
             ZData data;
             return data.read(in);
         }},
        {"a\0\r\0\n\0b\0"sv,
         [](auto& in, auto&) {
             ZUString line;
             return in.read_wide_line(line);
         }},
    };
    for (const memory_row_t& row : rows) {
        SCOPED_TRACE(&row - rows);
        bool has_failed = true;
        for (int n = 1; has_failed; ++n) {
            ZString out("old");
            ZMemoryRStream in(row.bytes.data(), static_cast<int>(row.bytes.size()));
            allocation_meter::section section(n);
            bool is_read = false;
            try {
                is_read = row.read_value(in, out);
            } catch (const std::bad_alloc&) {
                is_read = false;
            }
            section.stop();
            has_failed = section.inq_failed();
            EXPECT_NE(is_read, has_failed) << n;
            EXPECT_TRUE(is_read || out == "old") << n;
            EXPECT_EQ(section.inq_held(), out == "old" ? 0 : 1) << n;
        }
    }
}

} // namespace
