#include "classlib/streams/ZData.h"
#include "classlib/streams/ZMemoryRStream.h"
#include "classlib/strings/ZString.h"
#include "classlib/strings/ZUString.h"
#include "tests/support/allocation_meter.h"
#include "tests/support/block_stream.h"
#include "tests/support/recording_reporter.h"

#include <climits>
#include <functional>
#include <gtest/gtest.h>
#include <tuple>

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

// Values as the tables write them: -2 1.500000 'abc'.
std::string said(const auto& value) {
    if constexpr (std::is_convertible_v<decltype(value), double>)
        return std::to_string(value);
    else if constexpr (std::is_same_v<decltype(value), const ZData&>)
        return shown(bytes_of(value).c_str());
    else
        return shown(value);
}

// Reads from a stream, and says what came of it.
using read_t = std::function<std::string(ZRStream& in)>;

// Reads into a target that holds something already, and says the answer and the target.
template <typename T, typename Operation>
read_t into(Operation operation, T value) {
    return [operation, value](ZRStream& in) {
        T target = value;
        const auto answer = std::invoke(operation, in, target);
        return said(answer) + ' ' + said(target);
    };
}

// Extracts a T from a stream, and says it.
template <typename T>
std::string extract(ZRStream& in) {
    T target(77);
    in >> target;
    return said(target);
}

read_t until(const char* stops) {
    return into([stops](ZRStream& in, ZString& s) { return in.read_until(stops, s); }, ZString("old"));
}

read_t read_bytes(int n, bool counts_lines = false) {
    return [n, counts_lines](ZRStream& in) {
        std::string bytes(8, '.');
        int got = 77;
        const bool is_read = in.read_bytes(bytes.data(), n, counts_lines, &got);
        return said(is_read) + ' ' + said(got) + ' ' + bytes;
    };
}

const read_t int32 = into([](ZRStream& in, int& v) { return in.read_int32(v); }, 77);
const read_t packed = into(&ZRStream::read_packed_int, 77U);
const read_t cstring = into([](auto& in, auto& s) { return in.read_cstring(s, true); }, ZString("old"));
const read_t string = into([](auto& in, auto& s) { return s.read_from(in); }, ZString("old"));
const read_t word = into([](auto& in, auto& s) { return in >> s, +in.inq_error(); }, ZString("old"));
const read_t line = into(&ZRStream::read_line, ZString("old"));
const read_t name = into(&ZRStream::read_name, ZString("old"));
const read_t data = into([](auto& in, auto& d) { return in.read_data(d, true); }, ZData("old"));
const read_t block = into([](auto& in, auto& d) { return d.read(in); }, ZData("old"));
const read_t all = into(&ZRStream::read_all, ZData("old"));

constexpr rstreamerr_t none = rstreamerr_ok;
constexpr rstreamerr_t end_of_data = rstreamerr_end_of_data;
constexpr rstreamerr_t out_of_range = rstreamerr_out_of_range;

struct row_t {
    std::string_view bytes;
    read_t read;
    const char* want;
    const char* rest = ""; // what is left, while there is no error
    rstreamerr_t error = none;
};

// Blocks of any size give the same.
void check(const std::vector<row_t>& rows) {
    for (const row_t& row : rows) {
        for (std::size_t block_size = 1; block_size <= row.bytes.size() + 1; ++block_size) {
            SCOPED_TRACE(testing::Message() << '\'' << row.bytes << "' in blocks of " << block_size);
            block_stream in(row.bytes, {block_size});
            EXPECT_EQ(row.read(in), row.want);
            EXPECT_EQ(in.inq_error(), row.error);
            std::string rest;
            for (int c = in.get(); c >= 0; c = in.get())
                rest += static_cast<char>(c);
            EXPECT_EQ(rest, row.rest);
        }
    }
}

TEST(reading, binary_values) {
    check({
        {"\xFE", into(&ZRStream::read_uint8, std::uint8_t{77}), "1 254"},
        {"\xFF\xFE!", into(&ZRStream::read_int16, short{77}), "1 -2", "!"},
        {"\xFF\xFE", into(&ZRStream::read_uint16, std::uint16_t{77}), "1 65534"},
        {"\x80\0\0\1!"sv, int32, "1 -2147483647", "!"},
        {"\x80\0\0"sv, int32, "0 77", "", end_of_data},
        {"\xFF\xFF\xFF\xFE", into([](auto& in, auto& v) { return in.read_int32(v); }, 77L), "1 -2"},
        {"\xFF\xFF\xFF\xFE", into([](auto& in, auto& v) { return in.read_uint32(v); }, 77UL), "1 4294967294"},
        {"\xBD\xCC\xCC\xCD", into(&ZRStream::read_float, 77.0F), "1 -0.100000"},
        {"\x7F", packed, "1 127"},
        {"\xBF\xFF", packed, "1 16383"},
        {"\xBF", packed, "0 77", "", end_of_data},
        {"\xC0\0\x40\0"sv, packed, "1 16384"},
        {"\xFF\xFF\xFF\xFF", packed, "1 1073741823"},
        {"", packed, "0 77", "", end_of_data},
        {"ab\0c"sv, cstring, "1 'ab'", "c"},
        {"ab", cstring, "0 'old'", "", end_of_data},
        {"ab\0c"sv, string, "1 'ab'", "c"},
        {"ab", string, "0 'ab'", "", end_of_data},
        {"abcdef", read_bytes(5), "1 5 abcde...", "f"},
        {"abc", read_bytes(5), "0 3 abc.....", "", end_of_data},
        {"abcd", data, "1 'abc'", "d"},
        {"abc", [](auto& in) { return said(in.skip(INT_MAX)); }, "0", "", end_of_data},
        {"\0\0\0\3xyz!"sv, block, "1 'xyz'", "!"},
        {"\0\0\0"sv, block, "0 'old'", "", end_of_data},
        {"\0\x98\x96\x80!"sv, block, "0 'old'", "!"}, // 10,000,000
        {"abc", all, "1 'abc'", "", end_of_data},
        {"", [](auto& in) { return said(in.skip(1)) + all(in); }, "01 ''", "", end_of_data},
    });
}

TEST(reading, text) {
    const std::string long_number = std::string(99, '0') + "12"; // of 100 characters a number is read
    check({
        {"  # one\n#\n  42 rest", extract<int>, "42", " rest"},
        {"0x1f", extract<int>, "1", "f"},
        {"0b1012", extract<long>, "5", "2"},
        {"0x", extract<int>, "0"},
        {"-5", extract<unsigned int>, "0", "-5"},
        {"300 1", extract<unsigned char>, "44", "", out_of_range},
        {"65536", extract<unsigned short>, "0", "", out_of_range},
        {"2147483648", extract<int>, "-2147483648", "", out_of_range},
        {"4294967297", extract<unsigned int>, "1", "", out_of_range},
        {"9223372036854775807", extract<long long>, "9223372036854775807"},
        {"-9223372036854775808", extract<long long>, "0", "", out_of_range},
        {"1.5e3x", extract<double>, "1500.000000", "x"},
        {" #\n-.25 1", extract<float>, "-0.250000", " 1"},
        {"1e999", extract<double>, "inf"},
        {long_number, extract<double>, "1.000000", "2"},
        {" T#\nyf", [](auto& in) { return extract<bool>(in) += extract<bool>(in); }, "11", "f"},
        {" \v\f\t\r\n#\nxy", extract<char>, "120", "y"},
        {" #\n9a b", word, "0 '9a'", " b"},
        {"  ", word, "0 'old'"},
        {"my key = 1", name, "61 'my key '", "= 1"},
        {"a\\:b\\tc:d", until(":"), "58 'a:b<09>c'", ":d"},
        {" #\\n\\r\\\\\\x", until(":"), "-1 ' #<0A><0D>\\x'"},
        {"a\0b:"sv, until(":"), "58 'a'", ":"}, // a zero is no stop
        {"ab\r\ncd\n", line, "1 'ab'", "cd\n"},
        {" a\r#b\r\r\nc", line, "1 ' a#b'", "c"},
        {"a\0b\n\n"sv, line, "1 'a'", "\n"},
        {"", line, "0 null"},
    });
}

TEST(reading, wide_lines) {
    const std::pair<std::string_view, const char*> rows[] = {
        {"a\0\r\0\n\0b\0"sv, "'a' 'b' "},
        {"a\0\r\0\r\0b\0\n\0\n\0"sv, "'a' '' 'b' '' "},
        {"\r\n\n\r\n\1\r\1"sv, "'<A0D><D0A><10A><10D>' "}, // units that only look like line ends
        {"a\0\n"sv, "'a' "}};                              // a lone byte
    for (const auto& [bytes, want] : rows) {
        for (std::size_t block_size = 2; block_size <= bytes.size() + 2; block_size += 2) {
            block_stream in(bytes, {block_size});
            std::string lines;
            ZUString text("old");
            while (in.read_wide_line(text))
                lines += shown(text) + ' ';
            EXPECT_EQ(lines, want) << block_size;
            EXPECT_EQ(text.length(), 0);
            EXPECT_EQ(in.inq_error(), none);
        }
    }
}

TEST(reading, blocks_and_memory_end_where_they_say) {
    std::string bytes(4, '.');
    EXPECT_EQ(block_stream("abc", {2}).peek_bytes(bytes.data(), 3), 2);
    EXPECT_EQ(bytes, "ab..");
    EXPECT_EQ(ZMemoryRStream(nullptr, 0).peek() + ZMemoryRStream("abc", -1).peek(), -2);
    recording_reporter reporter;
    ZMemoryRStream("", 0).advance();
    EXPECT_EQ(reporter.take(), "assertion ZRStream: m_index < m_size;");
    ZMemoryRStream cut_short("\0\x98\x96\x7F", 4); // the largest block, 9,999,999 bytes
    ZData read;
    EXPECT_FALSE(read.read(cut_short));
    EXPECT_EQ(read.inq_n_bytes(), 9'999'999);
}

TEST(reading, positions_and_lines_are_counted) {
    const std::pair<read_t, const char*> rows[] = {
        {[](auto& in) { return said(in.get()) + said(in.get()); }, "[2]:2"},
        {[](auto& in) { return in.skip_comment(), ""s; }, "[2]:2"},
        {read_bytes(4, true), "[4]:3"},
        {cstring, "[7]:4"},
        {line, "[2]:2"},
        {until(nullptr), "[8]:4"},
        {all, ""}};
    for (const auto& [read, want] : rows) {
        block_stream in("a\nb\nc\n\0d"sv, {3});
        read(in);
        EXPECT_EQ(plain(in.inq_position_text(true)) + plain(in.inq_position_text(false)), want);
    }
}

TEST(reading, an_error_sticks_and_everything_fails_at_once) {
    const std::pair<read_t, const char*> rows[] = {
        {[](auto& in) { return said(in.peek()) + said(in.peek_non_space()) + said(in.get()); }, "-1-1-1"},
        {[](auto& in) { return said(in.at_end()) + said(in.seek(3)) + said(in.skip(0)); }, "1-10"},
        {[](auto& in) { return in.advance(), in.skip_space(), in.skip_comment(), ""s; }, ""},
        {[](auto& in) { return said(in.read_signed()) + said(in.read_unsigned()); }, "00"},
        {[](auto& in) { return plain(in.inq_position_text(true)) + said(in.read_real()); }, "0.000000"},
        {int32, "0 77"},
        {packed, "0 77"},
        {data, "0 'old'"},
        {string, "0 null"},
        {all, "0 ''"},
        {extract<int>, "77"},
        {name, "-1 'old'"},
        {until(":"), "-1 'old'"}};
    for (const auto& [read, want] : rows) {
        SCOPED_TRACE(&read - &rows[0].first);
        block_stream in("\n1 \n#:next", {6});
        EXPECT_EQ(in.get(), '\n');
        EXPECT_EQ(in.seek(0), -1);
        EXPECT_EQ(read(in), want);
        EXPECT_EQ(in.inq_position() + in.inq_line() + in.inq_n_fills(), 3);
        EXPECT_EQ(in.inq_error(), rstreamerr_unsupported);
    }
}

TEST(reading, a_source_that_misbehaves_or_fails_ends_the_data) {
    constexpr rstreamerr_t failed = rstreamerr_read_failed;
    const std::tuple<read_t, const char*, rstreamerr_t, rstreamerr_t> rows[] = {
        {read_bytes(4), "0 2 12......", none, end_of_data},
        {line, "1 '12'", none, none},
        {int32, "0 77", failed, failed},
        {all, "0 '12'", failed, failed},
        {cstring, "0 'old'", failed, failed}};
    for (const auto& [read, want, at_end, error] : rows) {
        block_stream in(at_end == none ? "12345" : "12", {2, 0}, at_end);
        EXPECT_EQ(read(in), want);
        EXPECT_EQ(in.inq_error(), error) << want;
    }
}

TEST(reading, running_out_of_memory_leaves_the_target_alone) {
    using read_text_t = bool (*)(ZRStream & in, ZString & out);
    const std::pair<std::string_view, read_text_t> rows[] = {
        {"abc\0"sv, [](auto& in, auto& out) { return in.read_cstring(out, true); }},
        {"abc\0"sv, [](auto& in, auto& out) { return out.read_from(in); }},
        {"abc"sv, [](auto& in, auto& out) { return in >> out, true; }},
        {"a\\n:"sv, [](auto& in, auto& out) { return in.read_until(":", out) == ':'; }},
        {"abc\r\n"sv, [](auto& in, auto& out) { return in.read_line(out); }},
    };
    for (const auto& row : rows) {
        ZString out("old");
        const auto read = [&] {
            ZMemoryRStream in(row.first.data(), static_cast<int>(row.first.size()));
            if (!row.second(in, out))
                throw std::bad_alloc();
        };
        for (int n = 1; runs_out_of_memory(n, read); ++n)
            EXPECT_STREQ(out, "old") << n;
        EXPECT_STRNE(out, "old");
    }
}

} // namespace
