#include "classlib/streams/ZData.h"
#include "classlib/strings/ZString.h"
#include "tests/support/allocation_meter.h"
#include "tests/support/recording_reporter.h"
#include "tests/support/shown_text.h"

#include <climits>
#include <gtest/gtest.h>
#include <memory>
#include <new>
#include <string>
#include <tuple>
#include <utility>

namespace {

constexpr const char* no_text = nullptr;

// "own 3/256 abc": the block is owned, and holds three bytes of 256.
std::string state_of(const ZData& d) {
    if (d.inq_data() == nullptr && d.inq_data_size() == 0)
        return "none";
    return (d.inq_owns() ? "own " : "ref ") + std::to_string(d.inq_n_bytes()) + '/' +
           std::to_string(d.inq_data_size()) + ' ' + bytes_of(d);
}

TEST(data, construction) {
    ZData spare("abc");
    ASSERT_TRUE(spare.grow(1));
    EXPECT_EQ(state_of(ZData()), "none");
    EXPECT_EQ(state_of(ZData("abc")), "own 3/3 abc");
    EXPECT_EQ(state_of(ZData(no_text)), "own 0/0 ");
    EXPECT_EQ(state_of(ZData(spare)), "own 3/3 abc");
    EXPECT_EQ(state_of(ZData(std::move(spare))), "own 3/259 abc");
    EXPECT_EQ(state_of(ZData(-1)), "own 0/0 ");
}

TEST(data, changes_of_an_owned_and_of_a_referred_block) {
    struct row_t {
        const char* what;
        bool (*change)(ZData& d);
        const char* of_owned; // "own 4/4 abcd" before
        const char* of_referred = of_owned;
    };
    constexpr row_t rows[] = {
        {"set", [](ZData& d) { return d.set("xy", 2); }, "own 2/2 xy"},
        {"take",
         [](ZData& d) {
             ZData other("xyz");
             return d.take(other), other.inq_data() == nullptr;
         },
         "own 3/3 xyz"},
        {"take itself", [](ZData& d) { return d.take(d), true; }, "own 4/4 abcd", "ref 4/4 abcd"},
        {"clear", [](ZData& d) { return d.clear(), true; }, "none"},
        {"empty", [](ZData& d) { return d.empty(), true; }, "own 0/4 ", "ref 0/4 "},
        {"enlarge", [](ZData& d) { return d.set_size(6) && (d.truncate(4), true); }, "own 4/6 abcd"},
        {"set_size none", [](ZData& d) { return d.set_size(-1); }, "own 0/0 "},
        {"grow", [](ZData& d) { return d.grow(1); }, "own 4/260 abcd"},
        {"commit", [](ZData& d) { return d.grow(1) && (d.inq_data()[4] = 'e', d.commit(1)); },
         "own 5/260 abcde"},
        {"append_byte", [](ZData& d) { return d.append_byte('e'); }, "own 5/260 abcde"},
        {"append none", [](ZData& d) { return d.append(nullptr, 0) && d.append("x", -1); }, "own 4/4 abcd",
         "ref 4/4 abcd"},
        {"append itself", [](ZData& d) { return d += d, true; }, "own 8/260 abcdabcd"},
        {"append its end", [](ZData& d) { return d.append(d.inq_data() + 2, 2); }, "own 6/260 abcdcd"},
        {"assign itself", [](ZData& d) { return d = static_cast<const ZData&>(d), true; }, "own 4/4 abcd",
         "ref 4/4 abcd"},
        {"assign no text", [](ZData& d) { return d = no_text, true; }, "own 0/0 "},
    };
    for (const row_t& row : rows) {
        SCOPED_TRACE(row.what);
        ZData owned("abcd");
        EXPECT_TRUE(row.change(owned));
        EXPECT_EQ(state_of(owned), row.of_owned);
        char bytes[] = {'a', 'b', 'c', 'd'}; // the sanitizers would not let the buffer release these
        ZData referring;
        referring.refer(bytes, 4);
        EXPECT_TRUE(row.change(referring));
        EXPECT_EQ(state_of(referring), row.of_referred);
        EXPECT_EQ(std::string(bytes, 4), "abcd");
    }
}

TEST(data, a_referred_block_is_written_in_place) {
    char bytes[] = {'a', 'b', 'c'};
    ZData d;
    d.refer(bytes, 3);
    d.truncate(1);
    EXPECT_TRUE(d.append("xy", 2));
    EXPECT_EQ(std::string(bytes, 3), "axy");
}

TEST(data, detaching_hands_over_the_block_or_a_copy) {
    char bytes[] = {'a', 'b', 'c'};
    for (const bool is_owned : {true, false}) {
        ZData d("abc");
        if (!is_owned)
            d.refer(bytes, 3);
        d.truncate(2);
        const unsigned char* const held = d.inq_data();
        const std::unique_ptr<unsigned char[]> block(d.detach());
        EXPECT_EQ(block.get() == held, is_owned);
        EXPECT_EQ(std::string(block.get(), block.get() + 2), "ab");
        EXPECT_EQ(state_of(d), "none");
        EXPECT_EQ(d.detach(), nullptr);
    }
}

TEST(data, appending_doubles_the_block) {
    ZData d;
    const allocation_meter::section section(0);
    for (int n = 1; n <= 5000; ++n)
        ASSERT_TRUE(d.append_byte('x'));
    EXPECT_EQ(section.inq_asked(), 6); // 256, 512, ... 8192
    EXPECT_EQ(d.inq_data_size(), 8192);
}

TEST(data, comparison) {
    using row_t = std::tuple<const char*, const char*, int, bool, bool>;
    const row_t rows[] = {{"abcd", "abc", 3, false, true}, {"abcd", "abc", 4, false, false},
                          {"ab", "ab", 5, true, true},     {"abc", "abd", 3, false, false},
                          {"abc", "xyz", -1, false, true}, {"", "a", 1, false, false}};
    for (const auto& [a, b, n, is_equal, has_equal_prefix] : rows) {
        EXPECT_EQ(ZData(a).equals(ZData(b)), is_equal) << a << ", " << b;
        EXPECT_EQ(ZData(b).equals_prefix(ZData(a), n), has_equal_prefix) << a << ", " << b;
    }
}

TEST(data, misuse_is_reported_and_changes_nothing) {
    recording_reporter reporter;
    ZData d("abcd");
    d.truncate(5);
    EXPECT_EQ(reporter.take_without_lines(), "assertion ZData: n <= m_nbytes;");
    for (const int n : {1, INT_MAX}) {
        EXPECT_FALSE(d.commit(n));
        EXPECT_EQ(reporter.take_without_lines(), "assertion ZData: m_nbytes <= m_data_size;");
    }
    EXPECT_EQ(state_of(d), "own 4/4 abcd");
}

TEST(data, running_out_of_memory_keeps_what_there_was) {
    struct row_t {
        const char* what;
        bool (*change)(ZData& d);
    };
    constexpr row_t rows[] = {
        {"set_size", [](ZData& d) { return d.set_size(9); }},
        {"grow", [](ZData& d) { return d.grow(1); }},
        {"grow far", [](ZData& d) { return d.grow(INT_MAX - 4); }},
        {"append itself", [](ZData& d) { return d.append(d); }},
        {"set", [](ZData& d) { return d.set("xy", 2); }},
        {"detach",
         [](ZData& d) {
             return d.inq_owns() ? false : std::unique_ptr<unsigned char[]>(d.detach()) != nullptr;
         }},
    };
    for (const row_t& row : rows) {
        char bytes[] = {'a', 'b', 'c', 'd'};
        for (const bool is_owned : {true, false}) {
            SCOPED_TRACE(testing::Message() << row.what << ", " << is_owned);
            ZData d("abcd");
            if (!is_owned)
                d.refer(bytes, 4);
            allocation_meter::section section(1);
            bool is_done = false;
            try {
                is_done = row.change(d);
            } catch (const std::bad_alloc&) {
                is_done = false;
            }
            section.stop();
            EXPECT_FALSE(is_done);
            EXPECT_EQ(section.inq_held(), 0);
            const bool is_cleared = row.what == std::string("set");
            EXPECT_EQ(state_of(d), is_cleared ? "none" : is_owned ? "own 4/4 abcd" : "ref 4/4 abcd");
        }
    }
}

TEST(data, a_block_of_the_largest_size_grows_no_more) {
    const std::unique_ptr<unsigned char[]> bytes(ZData("efg").detach()); // never looked at
    ZData d;
    d.refer(bytes.get(), INT_MAX);
    EXPECT_FALSE(d.append_byte('e'));
    EXPECT_FALSE(d.append(bytes.get(), 3));
    EXPECT_FALSE(d.grow(1));
    EXPECT_EQ(d.inq_n_bytes(), INT_MAX);
    EXPECT_EQ(d.inq_data(), bytes.get());
}

} // namespace
