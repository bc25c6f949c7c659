#include "classlib/strings/ZString.h"
#include "tests/support/allocation_meter.h"
#include "tests/support/recording_reporter.h"

#include <climits>
#include <gtest/gtest.h>
#include <tuple>

namespace {

using namespace std::string_literals;

constexpr const char* no_text = nullptr;

// "own 3/256 abc": the block is owned, and holds three bytes of 256.
std::string state_of(const ZData& d) {
    if (d.inq_data() == nullptr && d.inq_data_size() == 0)
        return "none";
    return (d.inq_owns() ? "own " : "ref ") + std::to_string(d.inq_n_bytes()) + '/' +
           std::to_string(d.inq_data_size()) + ' ' + bytes_of(d);
}

TEST(data, changes_keep_what_there_was_when_memory_runs_out) {
    struct row_t {
        bool (*change)(ZData& d);
        std::string of_owned; // "own 4/4 abcd" before
        std::string of_referred = of_owned;
    };
    const row_t rows[] = {
        {[](ZData& d) { return d.take(d), true; }, "own 4/4 abcd", "ref 4/4 abcd"},
        {[](ZData& d) { return d = static_cast<const ZData&>(d), true; }, "own 4/4 abcd", "ref 4/4 abcd"},
        {[](ZData& d) { return d = no_text, true; }, "own 0/0 "},
        {[](ZData& d) { return d.clear(), true; }, "none"},
        {[](ZData& d) { return d.empty(), true; }, "own 0/4 ", "ref 0/4 "},
        {[](ZData& d) { return d.set_size(6) && (d.truncate(4), true); }, "own 4/6 abcd"},
        {[](ZData& d) { return d.append_byte('e'); }, "own 5/260 abcde"},
        {[](ZData& d) { return d.append(nullptr, 0) && d.append("x", -1); }, "own 4/4 abcd", "ref 4/4 abcd"},
        {[](ZData& d) { return d += d, true; }, "own 8/260 abcdabcd"},
        {[](ZData& d) { return d.append(d.inq_data() + 2, 2); }, "own 6/260 abcdcd"},
    };
    for (const row_t& row : rows) {
        for (const bool is_owned : {true, false}) {
            SCOPED_TRACE(testing::Message() << "row " << &row - rows << ", " << is_owned);
            char bytes[] = {'a', 'b', 'c', 'd'}; // the sanitizers would not let the buffer release these
            ZData d("abcd");
            if (!is_owned)
                d.refer(bytes, 4);
            const std::string before = state_of(d);
            const auto change = [&] {
                if (!row.change(d))
                    throw std::bad_alloc();
            };
            if (runs_out_of_memory(1, change)) {
                EXPECT_EQ(state_of(d), before);
                change();
            }
            EXPECT_EQ(state_of(d), is_owned ? row.of_owned : row.of_referred);
            EXPECT_EQ(std::string(bytes, 4), "abcd");
        }
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
    EXPECT_EQ(state_of(d) + state_of(ZData(no_text)), "noneown 0/0 ");
    d = "abc";
    ASSERT_TRUE(d.grow(1));
    const unsigned char* const held = d.inq_data();
    EXPECT_EQ(state_of(ZData(d)), "own 3/3 abc");
    ZData moved(std::move(d));
    EXPECT_EQ(state_of(moved), "own 3/259 abc");
    d.take(moved);
    EXPECT_EQ(state_of(moved), "none");
    EXPECT_EQ(std::unique_ptr<unsigned char[]>(d.detach()).get(), held);
    EXPECT_TRUE(d.set("xy", 2));
    EXPECT_EQ(state_of(d), "own 2/2 xy");
    EXPECT_FALSE(runs_out_of_memory(1, [&] { EXPECT_FALSE(d.set("xy", 2)); }));
    EXPECT_EQ(state_of(d), "none");
}

TEST(data, appending_doubles_the_block_up_to_the_largest) {
    ZData d;
    {
        const allocation_meter::section section(0);
        for (int n = 1; n <= 5000; ++n)
            ASSERT_TRUE(d.append_byte('x'));
        EXPECT_EQ(section.inq_asked(), 6); // 256, 512, ... 8192
        EXPECT_EQ(d.inq_data_size(), 8192);
    }
    unsigned char bytes[] = {'e', 'f', 'g'}; // behind which nobody looks
    d.refer(bytes, INT_MAX);
    EXPECT_FALSE(d.append_byte('e') || d.append(bytes, 3) || d.grow(1));
    EXPECT_EQ(d.inq_n_bytes(), INT_MAX);
    EXPECT_EQ(d.inq_data(), bytes);
}

TEST(data, comparison_and_misuse) {
    using row_t = std::tuple<const char*, const char*, int, bool, bool>;
    const row_t rows[] = {{"abcd", "abc", 3, false, true}, {"abcd", "abc", 4, false, false},
                          {"ab", "ab", 5, true, true},     {"abc", "abd", 3, false, false},
                          {"abc", "xyz", -1, false, true}, {"", "a", 1, false, false}};
    for (const auto& [a, b, n, is_equal, has_equal_prefix] : rows) {
        EXPECT_EQ(ZData(a).equals(ZData(b)), is_equal) << a << ", " << b;
        EXPECT_EQ(ZData(b).equals_prefix(ZData(a), n), has_equal_prefix) << a << ", " << b;
    }
    recording_reporter reporter;
    ZData d("abcd");
    d.truncate(5);
    EXPECT_EQ(reporter.take(), "assertion ZData: n <= m_nbytes;");
    EXPECT_FALSE(d.commit(1) || d.commit(INT_MAX));
    EXPECT_EQ(state_of(d), "own 4/4 abcd");
}

} // namespace
