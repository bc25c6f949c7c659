#include "classlib/streams/ZData.h"
#include "classlib/streams/ZMemoryRStream.h"
#include "classlib/streams/ZRStream.h"
#include "classlib/strings/ZString.h"
#include "classlib/strings/ZUString.h"
#include "tests/support/allocation_meter.h"
#include "tests/support/block_stream.h"
#include "tests/support/shown_text.h"

#include <climits>
#include <cstdint>
#include <gtest/gtest.h>
#include <initializer_list>
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

// What a target holds before.
template <typename T>
T old_value() {
    if constexpr (std::is_arithmetic_v<T>)
        return 77;
    else
        return "old";
}

// Reads into a target that holds something already, and says the answer and the target.
template <typename T, typename Read>
std::string read_into(Read&& read) {
    T value = old_value<T>();
    const auto answer = read(value);
    return said(answer, value);
}

template <typename T, bool (ZRStream::*Read)(T&)>
std::string read(ZRStream& in) {
    return read_into<T>([&](T& value) { return (in.*Read)(value); });
}

constexpr auto read_line = &read<ZString, &ZRStream::read_line>;
constexpr auto read_all = &read<ZData, &ZRStream::read_all>;
constexpr auto read_int32 = &read<int, &ZRStream::read_int32>;

template <typename T>
std::string extract(ZRStream& in) {
    T value = old_value<T>();
    in >> value;
    return said(value);
}

std::string extract_flags(ZRStream& in) {
    bool first = true;
    bool second = false;
    in >> first >> second;
    return said(first, second);
}

std::string read_name(ZRStream& in) {
    return read_into<ZString>([&](auto& name) { return in.read_name(name); });
}

template <const auto& Stops>
std::string read_until(ZRStream& in) {
    return read_into<ZString>([&](auto& text) { return in.read_until(Stops, text); });
}

template <bool CountsLines>
std::string read_cstring(ZRStream& in) {
    return read_into<ZString>([&](auto& text) { return in.read_cstring(text, CountsLines); });
}

std::string read_string(ZRStream& in) {
    return read_into<ZString>([&](auto& text) { return text.read_from(in); });
}

std::string read_data(ZRStream& in) {
    return read_into<ZData>([&](auto& data) { return in.read_data(data, true); });
}

std::string read_block(ZRStream& in) {
    return read_into<ZData>([&](auto& data) { return data.read(in); });
}

template <int N, bool CountsLines = false>
std::string read_bytes(ZRStream& in) {
    std::string bytes(8, '.');
    int got = 77;
    const bool is_read = in.read_bytes(bytes.data(), N, CountsLines, &got);
    return said(is_read, got) + ' ' + bytes;
}

template <int N>
std::string skip(ZRStream& in) {
    return said(in.skip(N));
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
        {"\xFE"sv, &read<unsigned char, &ZRStream::read_uint8>, "1 254"},
        {"\xFF\xFE"sv, &read<short, &ZRStream::read_int16>, "1 -2"},
        {"\xFF\xFE"sv, &read<unsigned short, &ZRStream::read_uint16>, "1 65534"},
        {"\xFF\xFF\xFF\xFE"sv, &read<long, &ZRStream::read_int32>, "1 -2"},
        {"\xFF\xFF\xFF\xFE"sv, &read<unsigned long, &ZRStream::read_uint32>, "1 4294967294"},
        {"\xBD\xCC\xCC\xCD"sv, &read<float, &ZRStream::read_float>, "1 -0.1"},
        {"\x7F"sv, packed, "1 127"},
        {"\xBF\xFF"sv, packed, "1 16383"},
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

void check(std::initializer_list<row_t> rows) {
    for (const row_t& row : rows) {
        for (std::size_t block_size = 1; block_size <= row.bytes.size() + 1; ++block_size) {
            SCOPED_TRACE(testing::Message() << '\'' << row.bytes << "' in blocks of " << block_size);
            block_stream in(row.bytes, {block_size});
            EXPECT_EQ(row.read_value(in), row.want);
            EXPECT_EQ(in.inq_error(), row.error);
            std::string rest;
            for (int c = in.get(); c >= 0; c = in.get())
                rest += static_cast<char>(c);
            EXPECT_EQ(rest, row.rest);
        }
    }
}

TEST(binary_input, bytes_and_texts) {
    check({
        {"ab\0c"sv, &read_cstring<false>, "1 'ab'", "c"},
        {"ab"sv, &read_cstring<false>, "0 'old'", "", rstreamerr_end_of_data},
        {"ab\0c"sv, &read_string, "1 'ab'", "c"},
        {"ab"sv, &read_string, "0 'ab'", "", rstreamerr_end_of_data},
        {""sv, &read_string, "0 null", "", rstreamerr_end_of_data},
        {"abcdef"sv, &read_bytes<5>, "1 5 abcde...", "f"},
        {"abc"sv, &read_bytes<5>, "0 3 abc.....", "", rstreamerr_end_of_data},
        {"abcd"sv, &read_data, "1 [abc]", "d"},
        {"abc"sv, &skip<INT_MAX>, "0", "", rstreamerr_end_of_data},
        {"\0\0\0\3xyz!"sv, &read_block, "1 [xyz]", "!"},
        {"\0\0\0"sv, &read_block, "0 [old]", "", rstreamerr_end_of_data},
        {"\0\x98\x96\x80!"sv, &read_block, "0 [old]", "!"}, // 10,000,000
        {"\x80\0\0\0!"sv, &read_block, "0 [old]", "!"},
        {"abc"sv, read_all, "1 [abc]", "", rstreamerr_end_of_data},
    });
}

TEST(binary_input, a_block_that_is_cut_short_has_its_announced_size) {
    ZMemoryRStream in("\0\x98\x96\x7F", 4); // 9,999,999
    ZData data;
    EXPECT_FALSE(data.read(in));
    EXPECT_EQ(data.inq_n_bytes(), 9'999'999);
}

TEST(binary_input, peeked_bytes_lie_in_the_current_block) {
    block_stream in("abc", {2});
    std::string bytes(4, '.');
    EXPECT_TRUE(in.skip(1));
    EXPECT_EQ(in.peek_bytes(bytes.data(), 2), 1);
    EXPECT_EQ(bytes, "b...");
    EXPECT_TRUE(in.skip(2));
    EXPECT_EQ(in.peek_bytes(bytes.data(), 1), -1);
}

constexpr const char* no_stops = nullptr;
constexpr const char* colon = ":";

TEST(text_input, numbers) {
    constexpr rstreamerr_t out_of_range = rstreamerr_out_of_range;
    constexpr read_t uint8 = &extract<unsigned char>;
    constexpr read_t int64 = &extract<long long>;
    constexpr read_t uint64 = &extract<unsigned long long>;
    check({
        {"  # one\n#\n  42 rest", &extract<int>, "42", " rest"},
        {"0x1F", &extract<int>, "31", ""},
        {"0x1f", &extract<int>, "1", "f"},
        {"0b1012", &extract<int>, "5", "2"},
        {"0x", &extract<int>, "0", ""},
        {"-# comment\n 5", &extract<int>, "-5", ""},
        {"-5", &extract<unsigned int>, "0", "-5"},
        {"300 1", uint8, "44", "", out_of_range},
        {"2147483648", &extract<int>, "-2147483648", "", out_of_range},
        {"4294967297", &extract<unsigned int>, "1", "", out_of_range},
        {"9223372036854775807", int64, "9223372036854775807", ""},
        {"-9223372036854775808", int64, "0", "", out_of_range},
        {"18446744073709551617", uint64, "1", ""},
        {"9223372036854775808", [](auto& in) { return said(in.read_signed()); }, "0", "", out_of_range},
        {"1.5e3x", &extract<double>, "1500", "x"},
        {" #\n-.25 1", &extract<double>, "-0.25", " 1"},
        {"1e999", &extract<double>, "inf", ""},
    });

    const std::string long_number = std::string(99, '0') + "12"; // of 100 characters a number is read
    check({{long_number, &extract<double>, "1", "2"}});
}

TEST(text_input, words_and_lines) {
    check({
        {"true", &extract_flags, "1 0", "ue"},
        {" T#\ny ", &extract_flags, "1 1", " "},
        {" \v\f\t\r\n#\nxy", &extract<char>, "120", "y"},
        {"+x", &extract<ZString>, "'+'", "x"},
        {" #\n9a b", &extract<ZString>, "'9a'", " b"},
        {"  ", &extract<ZString>, "'old'", ""},
        {"my key = 1", read_name, "61 'my key '", "= 1"},
        {" #\n a_9\tb", read_name, "-1 'a_9<09>b'", ""},
        {"a\\:b\\tc:d", &read_until<colon>, "58 'a:b<09>c'", ":d"},
        {" #\\n\\r\\\\\\x", &read_until<colon>, "-1 ' #<0A><0D>\\x'", ""},
        {"ab\\", &read_until<colon>, "-1 'ab'", ""},
        {"a\0b:"sv, &read_until<colon>, "58 'a'", ":"}, // a zero is no stop
        {"ab\r\ncd\n", read_line, "1 'ab'", "cd\n"},
        {"\n\n", read_line, "1 ''", "\n"},
        {" a\r#b\r\r\nc", read_line, "1 ' a#b'", "c"},
        {"a\0b\nc"sv, read_line, "1 'a'", "c"},
        {"", read_line, "0 null", ""},
    });
}

TEST(text_input, wide_lines) {
    struct wide_row_t {
        std::string_view bytes;
        const char* lines;
    };
    constexpr wide_row_t rows[] = {
        {"a\0\r\0\n\0b\0"sv, "'a' 'b' "},
        {"a\0\n\0\r\0b\0"sv, "'a' 'b' "},
        {"a\0\r\0\r\0b\0\n\0\n\0"sv, "'a' '' 'b' '' "},
        {"\r\n\n\r\n\1\r\1"sv, "'<A0D><D0A><10A><10D>' "}, // units that only look like line ends
        {"a\0\n"sv, "'a' "},                               // a lone byte
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
        {[](auto& in) { return in.get(), said(in.get()); }, "[2]:2"},
        {&read_bytes<4, true>, "[4]:3"},
        {&read_cstring<true>, "[7]:4"},
        {read_line, "[2]:2"},
        {&read_until<no_stops>, "[8]:4"},
        {[](auto& in) { return in.skip_comment(), ""s; }, "[2]:2"},
        {read_all, ""},
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

    using ZRStream::set_error;

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
        {read_int32, "0 77"},
        {&read<unsigned int, &ZRStream::read_packed_int>, "0 77"},
        {&read_data, "0 [old]"},
        {&read_string, "0 null"},
        {&skip<0>, "0"},
        {read_all, "0 []", "1 []"},
        {&extract_flags, "1 0"},
        {&extract<ZString>, "'old'"},
        {&extract<int>, "77"},
        {read_name, "-1 'old'"},
        {&read_until<colon>, "-1 'old'"},
    };
    for (const rstreamerr_t error : {rstreamerr_end_of_data, rstreamerr_read_failed}) {
        for (const error_row_t& row : rows) {
            SCOPED_TRACE(testing::Message() << "row " << &row - rows << ", error " << error);
            scripted_stream in({{"\n1 \n#:", true}, {"next", true}});
            EXPECT_EQ(in.get(), '\n');
            in.set_error(error);
            in.set_error(rstreamerr_out_of_range);
            EXPECT_EQ(row.read_value(in),
                      error == rstreamerr_end_of_data ? row.want_at_end_of_data : row.want);
            EXPECT_EQ(said(in.inq_position(), in.inq_line(), in.inq_n_fills()), "1 1 1");
            EXPECT_EQ(in.inq_error(), error);
        }
    }
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
        {{"", true}, read_line, "1 '12'", rstreamerr_ok},
        {{"34", false, failed}, read_int32, "0 77", failed},
        {{"", false, failed}, &read_cstring<false>, "0 'old'", failed},
        {{"", false, failed}, read_all, "0 [12]", failed},
    };
    for (const source_row_t& row : rows) {
        SCOPED_TRACE(&row - rows);
        scripted_stream in({{"12", true}, row.second});
        EXPECT_EQ(row.read_value(in), row.want);
        EXPECT_EQ(in.inq_error(), row.error);
        EXPECT_EQ(in.peek(), -1);
    }
}

TEST(input, running_out_of_memory_leaves_the_target_alone) {
    using read_text_t = bool (*)(ZRStream & in, ZString & out);
    const std::pair<std::string_view, read_text_t> rows[] = {
        {"abc\0"sv, [](auto& in, auto& out) { return in.read_cstring(out, true); }},
        {"abc\0"sv, [](auto& in, auto& out) { return out.read_from(in); }},
        {"abc"sv, [](auto& in, auto& out) { return in >> out, true; }},
        {"a\\n:"sv, [](auto& in, auto& out) { return in.read_until(":", out) == ':'; }},
        {"abc\r\n"sv, [](auto& in, auto& out) { return in.read_line(out); }},
    };
    for (const auto& [bytes, read_text] : rows) {
        SCOPED_TRACE(bytes);
        bool has_failed = true;
        for (int n = 1; has_failed; ++n) {
            ZString out("old");
            ZMemoryRStream in(bytes.data(), static_cast<int>(bytes.size()));
            allocation_meter::section section(n);
            bool is_read = false;
            try {
                is_read = read_text(in, out);
            } catch (const std::bad_alloc&) {
                is_read = false;
            }
            section.stop();
            has_failed = section.inq_failed();
            EXPECT_NE(is_read, has_failed) << n;
            EXPECT_TRUE(is_read || out == "old") << n;
        }
    }
}

} // namespace
