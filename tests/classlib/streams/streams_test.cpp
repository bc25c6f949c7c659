#include "classlib/streams/ZFileRStream.h"
#include "classlib/streams/ZFileWStream.h"
#include "classlib/streams/ZMemoryRStream.h"
#include "classlib/strings/ZString.h"
#include "tests/support/allocation_meter.h"
#include "tests/support/block_stream.h"
#include "tests/support/byte_sink.h"
#include "tests/support/files_fixture.h"
#include "tests/support/recording_reporter.h"

#include <cerrno>
#include <cfloat>
#include <climits>
#include <cmath>
#include <functional>
#include <tuple>

namespace {

using namespace std::literals;

std::string bytes_of(const ZData& d) {
    return {d.inq_data(), d.inq_data() + d.inq_n_bytes()};
}

// "own 3/256 abc": the block is owned, and holds three bytes of 256.
std::string state_of(const ZData& d) {
    if (d.inq_data() == nullptr && d.inq_data_size() == 0)
        return "none";
    return (d.inq_owns() ? "own " : "ref ") + std::to_string(d.inq_n_bytes()) + '/' +
           std::to_string(d.inq_data_size()) + ' ' + bytes_of(d);
}

TEST(data, changes_keep_what_there_was_when_memory_runs_out) {
    const std::pair<bool (*)(ZData & d), const char*> rows[] = {
        {[](ZData& d) { return d = std::as_const(d), true; }, "ref 4/4 abcd"},
        {[](ZData& d) { return d = "", true; }, "own 0/0 "},
        {[](ZData& d) { return d.clear(), true; }, "none"},
        {[](ZData& d) { return d.empty(), true; }, "ref 0/4 "},
        {[](ZData& d) { return d.set_size(6) && (d.truncate(4), true); }, "own 4/6 abcd"},
        {[](ZData& d) { return d.append("x", -1) && d.append_byte('e'); }, "own 5/260 abcde"},
        {[](ZData& d) { return d.append(d.inq_data() + 2, 2); }, "own 6/260 abcdcd"}};
    for (const auto& [change, want] : rows) {
        char bytes[] = {'a', 'b', 'c', 'd'}; // the sanitizers would not let the buffer release these
        ZData d;
        d.refer(bytes, 4);
        const auto changing = [&, change = change] {
            if (!change(d))
                throw std::bad_alloc();
        };
        if (runs_out_of_memory(1, changing)) {
            EXPECT_EQ(state_of(d), "ref 4/4 abcd") << want;
            changing();
        }
        EXPECT_EQ(state_of(d), want);
        EXPECT_EQ(std::string(bytes, 4), "abcd") << want;
    }
}

TEST(data, blocks_change_hands_and_are_written_in_place) {
    char bytes[] = {'a', 'b', 'c'};
    ZData d;
    d.refer(bytes, 3);
    d.zero_fill();
    d.truncate(1);
    EXPECT_TRUE(d.append("xy", 2));
    EXPECT_EQ(std::string(bytes, 3), "\0xy"s);
    EXPECT_TRUE(runs_out_of_memory(1, [&] { delete[] d.detach(); }));
    const std::unique_ptr<unsigned char[]> copy(d.detach());
    EXPECT_EQ(std::string(copy.get(), copy.get() + 3), "\0xy"s);
    d = "abc";
    EXPECT_TRUE(d.grow(1));
    const unsigned char* const held = d.inq_data();
    ZData moved(std::move(d));
    EXPECT_EQ(state_of(moved) + ", " + state_of(ZData(moved)), "own 3/259 abc, own 3/3 abc");
    d.take(moved);
    EXPECT_EQ(state_of(moved), "none");
    EXPECT_EQ(std::unique_ptr<unsigned char[]>(d.detach()).get(), held);
    EXPECT_TRUE(d.set("xy", 2));
    EXPECT_FALSE(runs_out_of_memory(1, [&] { EXPECT_FALSE(d.set("xy", 2)); }));
    EXPECT_EQ(state_of(d), "none");
}

TEST(data, comparison_growth_and_misuse) {
    EXPECT_TRUE(ZData("abc").equals_prefix("abcd", 3) && ZData("ab").equals_prefix("ab", 5));
    EXPECT_FALSE(ZData("abc").equals_prefix("abcd", 4) || ZData("abc").equals_prefix("abd", 3));
    EXPECT_FALSE(ZData("abc").equals("abd") || ZData("abc").equals("ab"));
    recording_reporter reporter;
    ZData d("abcd");
    d.truncate(5);
    EXPECT_EQ(reporter.take(), "assertion ZData: n <= m_nbytes;");
    EXPECT_FALSE(d.commit(1) || d.commit(INT_MAX));
    EXPECT_EQ(state_of(d), "own 4/4 abcd");
    for (int n = 0; n < 5000; ++n)
        EXPECT_TRUE(d.append_byte('x'));
    EXPECT_EQ(d.inq_data_size(), 8320); // from 4 + 256 on, doubled
    unsigned char bytes[] = {'e'};      // beyond which nobody looks
    d.refer(bytes, INT_MAX);
    EXPECT_FALSE(d.append_byte('e') || d.append(bytes, 1) || d.grow(1));
}

ZWStream& width5(ZWStream& out) {
    return out.set_width(5), out;
}

TEST(writing, text_follows_the_formatting_state) {
    using row_t = std::pair<void (*)(ZWStream & out), std::string>; // the bytes and then the reports
    const row_t rows[] = {
        {[](auto& out) { out << INT64_MIN << '\0' << 0U; }, "-9223372036854775808\0"s + "0"},
        {[](auto& out) { out << base16 << INT_MIN << ',' << UINT_MAX; }, "FFFFFFFF80000000,FFFFFFFF"},
        {[](auto& out) { out.set_base(36), out << UINT64_MAX << out.digit_char(10); }, "3W5E11264SGSFA"},
        {[](auto& out) { out << width5 << left_justify << "ab" << width5 << 'c' << '|'; }, "ab   c    |"},
        {[](auto& out) { out << width5 << "abcdef" << width5 << "abcde" << 'g'; }, "abcdefabcdeg"},
        {[](auto& out) { out << width5 << "" << ZString() << 'x'; }, "    x"},
        {[](auto& out) { out.set_width(10), out << 3.25 << ';' << width5 << -42; }, "  3.250000;    -42"},
        {[](auto& out) { out.set_fill('*'), out << width5 << ZUString("\xE9"); }, "***\xC3\xA9"},
        {[](auto& out) { out << width5 << wide_new_line << 'x'; }, "\r\0\n\0    x"s},
        {[](auto& out) { out.set_base(1), out << 255; }, "255assertion ZWStream: base >= 2 && base <= 36;"},
        {[](auto& out) { out.set_width(-1), out << 'x'; }, "xassertion ZWStream: width >= 0;"},
        {[](auto& out) { out.set_base(2), out << -1; },
         std::string(64, '1') + "assertion ZWStream: c >= str;"},
        {[](auto& out) { out.write_packed_int(0xC0000005); },
         "\xC0\0\0\5warning ZWStream: PackedInt out of range;"s}};
    for (const auto& [write, want] : rows) {
        recording_reporter reporter;
        byte_sink out;
        write(out);
        EXPECT_EQ(out.inq_bytes() + reporter.take(), want);
    }
}

TEST(writing, the_formatting_state_stays_with_its_string) {
    ZString s("text");
    s << base16;
    s = "x";
    for (ZString other : {s, s + "", s.left(1)})
        EXPECT_STREQ((other << 10, other), "x10");
    EXPECT_FALSE(runs_out_of_memory(2, [&] { s << left_justify << width5 << 10; })); // one write
    s.add_base_prefix(s);
    EXPECT_STREQ(s, "0xxA    ");
    s.clear();
    EXPECT_STREQ((s << 10, s), "10");
}

TEST(writing, floating_point_numbers_are_correctly_rounded_or_reported) {
    using row_t = std::tuple<double, int, std::string>;
    for (const auto& [value, precision, want] :
         {row_t{2.5, 0, "2. 2.e000"},
          {0.1, 20, "0.10000000000000000555 1.0000000000000000555e-001"},
          {-0.0, 2, "-0.00 -0.0e000"},
          {-HUGE_VAL, 6, "-inf -inf"},
          {std::copysign(NAN, -1.0), 2, "nan nan"}}) {
        byte_sink out;
        out.set_precision(precision);
        out << value << ' ' << scientific << value;
        EXPECT_EQ(out.inq_bytes(), want);
    }
    // The largest precision makes 512 with the digits before the point, or the zeros after it, and 16.
    using edge_t = std::tuple<double, ZWStream::manipulator_t, int>;
    for (const auto& [value, form, precision] :
         {edge_t{-10, &fixed_point, 494}, {.5, &fixed_point, 496}, {DBL_MAX, &scientific, 187}}) {
        recording_reporter reporter;
        byte_sink out;
        out.set_precision(precision + 1);
        out << form << value;
        EXPECT_EQ(out.inq_bytes() + reporter.take(), "warning ZWStream: Buffer too small;") << value;
        out.set_precision(precision);
        EXPECT_NE((out << value, out).inq_bytes(), "") << value;
    }
}

TEST(writing, binary_forms_leave_the_formatting_state_alone) {
    byte_sink out;
    out.set_fill('*');
    out << base16 << width5 << left_justify;
    EXPECT_TRUE(out.write_int16(-2) && out.write_int32(-3L) && out.write_uint32(0x9ABCDEF0UL));
    EXPECT_TRUE(out.write_float(-0.1F) && out.write_packed_int(16383) && out.write_packed_int(16384));
    EXPECT_TRUE(ZString("abc").write_to(out) && out.write_uint8(200) && ZData("a\0b", 3).write(out));
    EXPECT_EQ((out << 'x', out).inq_bytes(),
              "\xFF\xFE\xFF\xFF\xFF\xFD\x9A\xBC\xDE\xF0\xBD\xCC\xCC\xCD\xBF\xFF"
              "\xC0\0\x40\0abc\0\xC8\0\0\0\3a\0bx****"s);
    ZFileWStream refusing{ZFileLocation()};
    EXPECT_FALSE(refusing.write_int32(1) || refusing.write_packed_int(1) || refusing.write_cstring("a"));
    EXPECT_FALSE(ZData("a").write(refusing) || refusing.write_float(1));
}

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
template <typename T>
read_t into(auto operation, T value) {
    return [operation, value](ZRStream& in) {
        T target = value;
        const auto answer = std::invoke(operation, in, target);
        return said(answer) + ' ' + said(target);
    };
}

constexpr auto extract = [](auto& in, auto& v) { return in >> v, +in.inq_error(); };

read_t until(const char* stops) {
    return into([stops](ZRStream& in, ZString& s) { return in.read_until(stops, s); }, ZString("old"));
}

std::string read_bytes(ZRStream& in) {
    std::string bytes(8, '.');
    int got = 77;
    const bool is_read = in.read_bytes(bytes.data(), 4, true, &got);
    return said(is_read) + ' ' + said(got) + ' ' + bytes;
}

std::string wide_lines(ZRStream& in) {
    std::string lines;
    ZUString text("old");
    while (in.read_wide_line(text))
        lines += shown(text) + ' ';
    return lines + shown(text);
}

const read_t number = into(extract, 77);
const read_t int16 = into(&ZRStream::read_int16, short{77});
const read_t real32 = into(&ZRStream::read_float, 77.0F);
const read_t int32 = into([](ZRStream& in, int& v) { return in.read_int32(v); }, 77);
const read_t packed = into(&ZRStream::read_packed_int, 77U);
const read_t cstring = into([](auto& in, auto& s) { return in.read_cstring(s, true); }, ZString("old"));
const read_t string = into([](auto& in, auto& s) { return s.read_from(in); }, ZString("old"));
const read_t word = into(extract, ZString("old"));
const read_t line = into(&ZRStream::read_line, ZString("old"));
const read_t name = into(&ZRStream::read_name, ZString("old"));
const read_t data = into([](auto& in, auto& d) { return in.read_data(d, true); }, ZData("old"));
const read_t block = into([](auto& in, auto& d) { return d.read(in); }, ZData("old"));
const read_t all = into(&ZRStream::read_all, ZData("old"));

// Expects the answers, what is left while there is no error, and the error, from blocks of any size, in
// units.
void check(std::string_view bytes, const std::vector<read_t>& reads, const std::string& want,
           std::size_t unit = 1) {
    for (std::size_t block_size = unit; block_size <= bytes.size() + unit; block_size += unit) {
        block_stream in(bytes, {block_size});
        std::string got;
        for (const read_t& read : reads)
            got += read(in) + ", ";
        for (int c = in.get(); c >= 0; c = in.get())
            got += static_cast<char>(c);
        EXPECT_EQ(got + ' ' + said(+in.inq_error()), want) << "in blocks of " << block_size;
    }
}

TEST(reading, binary_values) {
    check("\xFF\xFE\x80\0\0\1\xBD\xCC\xCC\xCD\xBF\xFF\xC0\0\x40\0ab\0abcde"sv,
          {int16, int32, real32, packed, packed, string, data, &read_bytes},
          "1 -2, 1 -2147483647, 1 -0.100000, 1 16383, 1 16384, 1 'ab', 1 'abc', 0 2 de......,  1");
    check("\x80\0\0"sv, {int32}, "0 77,  1");
    check("\xBF", {packed}, "0 77,  1");
    check("ab", {cstring}, "0 'old',  1");
    check("ab", {string}, "0 'ab',  1");
    check("abc", {[](auto& in) { return said(in.skip(INT_MAX)); }, all}, "0, 1 '',  1");
    check("\0\0\0\3xyz!"sv, {block}, "1 'xyz', ! 0");
    check("\0\0\0"sv, {block}, "0 'old',  1");
    check("\0\x98\x96\x80!"sv, {block}, "0 'old', ! 0"); // 10,000,000
}

TEST(reading, text) {
    check("  # one\n#\n  42 0x1f 0b1012 -5 1.5e3x \v\f\r\n#\n-.25 # \nTy 9a\n",
          {number, number, word, number, number, into(extract, 77U), number, into(extract, 77.0), word,
           into(extract, 77.0F), into(extract, false), into(extract, '?'), word, word},
          "0 42, 0 1, 0 'f', 0 5, 0 2, 0 0, 0 -5, 0 1500.000000, 0 'x', 0 -0.250000, 0 1, 0 121, 0 '9a', 0 "
          "'old',  0");
    check(std::string(99, '0') + "12", {into(extract, 77.0)},
          "0 1.000000, 2 0"); // of 100 characters a number is read
    check("300 1", {into(extract, std::uint8_t{77})}, "5 44,  5");
    check("2147483648", {number}, "5 -2147483648,  5");
    check("-9223372036854775808", {into(extract, 77LL)}, "5 0,  5");
    check("my key = a\\:b\\tc:", {name, word, until(":")}, "61 'my key ', 0 '=', 58 ' a:b<09>c', : 0");
    check(" #\\n\\r\\\\\\x", {until(":")}, "-1 ' #<0A><0D>\\x',  0");
    check("a\0b:"sv, {until(":")}, "58 'a', : 0"); // a zero is no stop
    check(" a\r#b\r\r\nc\n\na\0b\n"sv, {line, line, line, line, line},
          "1 ' a#b', 1 'c', 1 '', 1 'a', 0 null,  0");
    check("a\0\r\0\r\0b\0\n\0\r\0\n\0"sv, {&wide_lines}, "'a' '' 'b' '' '',  0", 2);
    check("\r\n\n\r\n\1\r\1"sv, {&wide_lines}, "'<A0D><D0A><10A><10D>' '',  0", 2); // no line ends
    check("a\0\n"sv, {&wide_lines}, "'a' '',  0", 2);                               // a lone byte
}

TEST(reading, blocks_and_positions_are_counted) {
    std::string bytes(4, '.');
    EXPECT_EQ(block_stream("abc", {2}).peek_bytes(bytes.data(), 3), 2);
    EXPECT_EQ(ZMemoryRStream(nullptr, 0).peek() + ZMemoryRStream("abc", -1).peek(), -2);
    recording_reporter reporter;
    ZMemoryRStream("", 0).advance();
    EXPECT_EQ(reporter.take(), "assertion ZRStream: m_index < m_size;");
    ZMemoryRStream cut_short("\0\x98\x96\x7F", 4); // the largest block, 9,999,999 bytes
    ZData read;
    EXPECT_FALSE(read.read(cut_short));
    EXPECT_EQ(read.inq_n_bytes(), 9'999'999);
    for (const auto& [reading, want] : {std::pair(read_t(&read_bytes), "[4]:3"),
                                        {cstring, "[7]:4"},
                                        {line, "[2]:2"},
                                        {until(nullptr), "[8]:4"},
                                        {all, ""}}) {
        block_stream in("a\nb\nc\n\0d"sv, {3});
        reading(in);
        EXPECT_EQ(plain(in.inq_position_text(true)) + plain(in.inq_position_text(false)), want);
    }
}

TEST(reading, an_error_sticks_and_everything_fails_at_once) {
    block_stream in("\n1 \n#:next", {6});
    EXPECT_EQ(in.get(), '\n');
    EXPECT_EQ(in.seek(0), -1);
    EXPECT_EQ(in.peek() + in.peek_non_space() + in.get(), -3);
    EXPECT_TRUE(in.at_end() && !in.skip(0));
    in.advance();
    in.skip_comment();
    EXPECT_EQ(static_cast<double>(in.read_signed()) + in.read_real(), 0);
    EXPECT_EQ(packed(in) + ' ' + data(in) + ' ' + all(in), "0 77 0 'old' 0 ''");
    EXPECT_EQ(number(in) + ' ' + name(in) + ' ' + until(":")(in), "8 77 -1 'old' -1 'old'");
    EXPECT_EQ(in.inq_position() + in.inq_line(), 2);
    EXPECT_EQ(in.inq_position_text(true).length(), 0);
    EXPECT_EQ(in.inq_error(), rstreamerr_unsupported);
}

TEST(reading, a_source_that_misbehaves_or_fails_ends_the_data) {
    block_stream stalling("12345", {2, 0});
    EXPECT_EQ(read_bytes(stalling), "0 2 12......");
    EXPECT_EQ(stalling.inq_error(), rstreamerr_end_of_data);
    for (const auto& [read, want] : {std::pair(all, "0 '12'"), {cstring, "0 'old'"}}) {
        block_stream failing("12", {2}, rstreamerr_read_failed);
        EXPECT_EQ(read(failing), want);
        EXPECT_EQ(failing.inq_error(), rstreamerr_read_failed) << want;
    }
}

TEST(reading, running_out_of_memory_leaves_the_target_alone) {
    bool (*const operations[])(ZRStream & in, ZString & out) = {
        [](auto& in, auto& out) { return in.read_cstring(out, true); },
        [](auto& in, auto& out) { return out.read_from(in); },
        [](auto& in, auto& out) { return in >> out, true; },
        [](auto& in, auto& out) { return in.read_until("\r", out) == '\r'; },
        [](auto& in, auto& out) { return in.read_line(out); }};
    for (const auto& operation : operations) {
        ZString out("old");
        const auto read = [&] {
            ZMemoryRStream in("abc\r\n", 6);
            if (!operation(in, out))
                throw std::bad_alloc();
        };
        for (int n = 1; runs_out_of_memory(n, read); ++n)
            EXPECT_STREQ(out, "old") << n;
        EXPECT_EQ(out.left(3), "abc");
    }
}

class streams_to_files : public files_fixture {};

TEST_F(streams_to_files, bytes_come_back_as_they_were_written) {
    std::string bytes(200001, '\0');
    std::generate(bytes.begin(), bytes.end(), std::mt19937());
    for (const std::vector<int>& sizes : {std::vector{0}, {65535, 1, 1}, {65536}, {200000, 1}}) {
        const ZFileLocation target = file(std::to_string(sizes[0]));
        ZFileWStream out(target);
        int n = 0;
        for (const int size : sizes) {
            EXPECT_TRUE(out.write_bytes(bytes.data() + n, size));
            n += size;
        }
        EXPECT_TRUE(out.close());
        ZFileRStream in(target);
        EXPECT_EQ(in.inq_source_size(), n);
        ZData read;
        EXPECT_TRUE(in.read_all(read));
        EXPECT_TRUE(read.equals(ZData(bytes.data(), n))) << n;
        ZFileRStream closed(target);
        EXPECT_EQ(closed.at_end(), n == 0);
        closed.close();
        EXPECT_EQ(closed.skip(n), n <= 65536); // as far as the block goes
    }
    ZFileWStream(file("unclosed")) << "held back";
    EXPECT_EQ(read("unclosed"), "");
}

TEST_F(streams_to_files, what_cannot_be_opened_says_why) {
    write("existing", "abc");
    make_folder("folder");
    for (const auto& [target, read_error, create_error] :
         {std::tuple("existing", 0, EEXIST), // 0 where it opens
          {"folder", EACCES, EEXIST},
          {"no/file", ENOENT, ENOENT}}) {
        errno = 0;
        const ZFileRStream in(file(target));
        EXPECT_EQ(errno, read_error) << target;
        EXPECT_EQ(in.inq_error(), read_error != 0 ? rstreamerr_read_failed : rstreamerr_ok) << target;
        EXPECT_EQ(in.inq_source_size(), read_error != 0 ? -1 : 3) << target;
        ZFileWStream out(file(target));
        EXPECT_EQ(errno, create_error) << target;
        EXPECT_FALSE(out.inq_ok() || out.close()) << target;
    }
    EXPECT_EQ(read("existing"), "abc");
    for (int n = 1; runs_out_of_memory(n, [&] { ZFileWStream out(file("new")); }); ++n)
        EXPECT_EQ(list(), "existing folder ") << n;
}

} // namespace
