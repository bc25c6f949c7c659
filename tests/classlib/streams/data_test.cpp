#include "classlib/streams/ZData.h"
#include "classlib/strings/ZString.h"
#include "tests/support/allocation_meter.h"
#include "tests/support/recording_reporter.h"
#include "tests/support/shown_text.h"

#include <climits>
#include <cstddef>
#include <gtest/gtest.h>
#include <memory>
#include <new>
#include <string>
#include <utility>

namespace {

constexpr const char* no_text = nullptr;

// "own 3/256 abc": the block is owned, and holds three bytes of 256.
std::string state_of(const ZData& d) {
    const std::string counts =
        std::to_string(d.inq_n_bytes()) + '/' + std::to_string(d.inq_data_size()) + ' ' + bytes_of(d);
    if (d.inq_data() == nullptr)
        return d.inq_owns() || counts != "0/0 " ? "a count or an owner without a block" : "none";
    return (d.inq_owns() ? "own " : "ref ") + counts;
}

unsigned char* new_block(const char* bytes) {
    return ZData(bytes).detach();
}

TEST(data, construction) {
    ZData spare("abc");
    ASSERT_TRUE(spare.grow(1));
    EXPECT_EQ(state_of(ZData()), "none");
    EXPECT_EQ(state_of(ZData("abc", 2)), "own 2/2 ab");
    EXPECT_EQ(state_of(ZData("abc")), "own 3/3 abc");
    EXPECT_EQ(state_of(ZData(no_text)), "own 0/0 ");
    EXPECT_EQ(state_of(ZData(ZString("abc"))), "own 3/3 abc");
    EXPECT_EQ(state_of(ZData(ZString())), "own 0/0 ");
    EXPECT_EQ(state_of(ZData(spare)), "own 3/3 abc");
    EXPECT_EQ(state_of(ZData(std::move(spare))), "own 3/259 abc");
    EXPECT_EQ(state_of(ZData(-1)), "own 0/0 ");
    const ZData undefined(4);
    EXPECT_EQ(undefined.inq_n_bytes() * 10 + undefined.inq_data_size(), 44);
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
        {"set none", [](ZData& d) { return d.set("xy", -2); }, "own 0/0 "},
        {"adopt", [](ZData& d) { return d.adopt(new_block("xyz"), 3), true; }, "own 3/3 xyz"},
        {"adopt null", [](ZData& d) { return d.adopt(nullptr, 3), true; }, "none"},
        {"refer to none",
         [](ZData& d) {
             static char c = 'x';
             return d.refer(&c, -1), true;
         },
         "ref 0/0 "},
        {"take",
         [](ZData& d) {
             ZData other("xyz");
             return d.take(other), other.inq_data() == nullptr;
         },
         "own 3/3 xyz"},
        {"take itself", [](ZData& d) { return d.take(d), true; }, "own 4/4 abcd", "ref 4/4 abcd"},
        {"clear", [](ZData& d) { return d.clear(), true; }, "none"},
        {"empty", [](ZData& d) { return d.empty(), true; }, "own 0/4 ", "ref 0/4 "},
        {"truncate", [](ZData& d) { return d.truncate(3), true; }, "own 3/4 abc", "ref 3/4 abc"},
        {"truncate nothing", [](ZData& d) { return d.truncate(4), true; }, "own 4/4 abcd", "ref 4/4 abcd"},
        {"truncate all", [](ZData& d) { return d.truncate(-1), true; }, "own 0/4 ", "ref 0/4 "},
        {"shrink", [](ZData& d) { return d.set_size(2); }, "own 2/2 ab"},
        {"keep", [](ZData& d) { return d.set_size(4); }, "own 4/4 abcd", "ref 4/4 abcd"},
        {"enlarge", [](ZData& d) { return d.set_size(6) && (d.truncate(4), true); }, "own 4/6 abcd"},
        {"exactly", [](ZData& d) { return d.truncate(3), d.set_size(4) && (d.truncate(3), true); },
         "own 3/4 abc"},
        {"set_size none", [](ZData& d) { return d.set_size(-1); }, "own 0/0 "},
        {"grow", [](ZData& d) { return d.grow(1); }, "own 4/260 abcd"},
        {"grow far", [](ZData& d) { return d.grow(300); }, "own 4/304 abcd"},
        {"commit", [](ZData& d) { return d.grow(1) && (d.inq_data()[4] = 'e', d.commit(1)); },
         "own 5/260 abcde"},
        {"commit again", [](ZData& d) { return d.truncate(2), d.commit(2) && d.commit(-1); }, "own 4/4 abcd",
         "ref 4/4 abcd"},
        {"append_byte", [](ZData& d) { return d.append_byte('e'); }, "own 5/260 abcde"},
        {"append", [](ZData& d) { return d.append("efg", 2); }, "own 6/260 abcdef"},
        {"append none", [](ZData& d) { return d.append(nullptr, 0) && d.append("x", -1); }, "own 4/4 abcd",
         "ref 4/4 abcd"},
        {"append text", [](ZData& d) { return d += "ef", true; }, "own 6/260 abcdef"},
        {"append no text", [](ZData& d) { return d += no_text, true; }, "own 4/4 abcd", "ref 4/4 abcd"},
        {"append string", [](ZData& d) { return (d += ZString("e")).append(ZString("f")); },
         "own 6/260 abcdef"},
        {"append data", [](ZData& d) { return d += ZData("ef", 1), true; }, "own 5/260 abcde"},
        {"append itself", [](ZData& d) { return d += d, true; }, "own 8/260 abcdabcd"},
        {"append its end", [](ZData& d) { return d.append(d.inq_data() + 2, 2); }, "own 6/260 abcdcd"},
        {"assign", [](ZData& d) { return d = ZData("xyz", 2), true; }, "own 2/2 xy"},
        {"assign itself", [](ZData& d) { return d = static_cast<const ZData&>(d), true; }, "own 4/4 abcd",
         "ref 4/4 abcd"},
        {"assign copy",
         [](ZData& d) {
             const ZData other("xyz");
             return d = other, true;
         },
         "own 3/3 xyz"},
        {"assign string", [](ZData& d) { return d = ZString("xyz"), true; }, "own 3/3 xyz"},
        {"assign text", [](ZData& d) { return d = "xyz", true; }, "own 3/3 xyz"},
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
    d.truncate(2);
    d.zero_fill();
    EXPECT_EQ(std::string(bytes, 3), std::string("\0\0y", 3));
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
    int n_allocations = 0;
    for (int n = 1, size = 0; n <= 5000; ++n) {
        const allocation_meter::section section(0);
        ASSERT_TRUE(d.append_byte(static_cast<unsigned char>(n)));
        n_allocations += section.inq_asked();
        size = n == 1 ? 256 : n > size ? 2 * size : size;
        ASSERT_EQ(d.inq_data_size(), size);
    }
    EXPECT_EQ(n_allocations, 6); // 256, 512, ... 8192

    ZData ten("0123456789");
    ASSERT_TRUE(ten.set_size(256));
    ten.truncate(10);
    EXPECT_TRUE(ten.append(ZData(1000)));
    EXPECT_EQ(ten.inq_n_bytes() + ten.inq_data_size(), 2 * 1010);

    const allocation_meter::section section(0);
    EXPECT_TRUE(ten.set_size(1010));
    ten.empty();
    EXPECT_TRUE(ten.append(nullptr, 0) && ten.commit(1010));
    EXPECT_EQ(section.inq_asked(), 0);
}

TEST(data, comparison) {
    struct row_t {
        const char* a;
        const char* b;
        int n;
        bool is_equal;
        bool has_equal_prefix;
    };
    constexpr row_t rows[] = {{"abcd", "abc", 3, false, true},  {"abcd", "abc", 4, false, false},
                              {"abcd", "abc", 5, false, false}, {"ab", "ab", 5, true, true},
                              {"abc", "abd", 2, false, true},   {"abc", "abd", 3, false, false},
                              {"abc", "xyz", 0, false, true},   {"abc", "xyz", -1, false, true},
                              {"", "", 1, true, true},          {"", "a", 1, false, false}};
    for (const row_t& row : rows) {
        SCOPED_TRACE(testing::Message() << row.a << ", " << row.b << ", " << row.n);
        const ZData a(row.a);
        const ZData b(row.b);
        EXPECT_EQ(a.equals(b), row.is_equal);
        EXPECT_EQ(b.equals(a), row.is_equal);
        EXPECT_EQ(a.equals_prefix(b, row.n), row.has_equal_prefix);
        EXPECT_EQ(b.equals_prefix(a, row.n), row.has_equal_prefix);
    }
    ZData spare("ab");
    ASSERT_TRUE(spare.grow(1));
    EXPECT_TRUE(spare.equals(ZData("ab")));
    EXPECT_TRUE(ZData().equals(ZData("")));
}

TEST(data, misuse_is_reported_and_changes_nothing) {
    struct row_t {
        void (*change)(ZData& d);
        const char* report;
    };
    constexpr const char* not_within = "assertion ZData: m_nbytes <= m_data_size;";
    constexpr row_t rows[] = {
        {[](ZData& d) { d.truncate(5); }, "assertion ZData: n <= m_nbytes;"},
        {[](ZData& d) { d.truncate(INT_MAX); }, "assertion ZData: n <= m_nbytes;"},
        {[](ZData& d) { EXPECT_FALSE(d.commit(1)); }, not_within},
        {[](ZData& d) { EXPECT_FALSE(d.commit(INT_MAX)); }, not_within},
    };
    for (const row_t& row : rows) {
        recording_reporter reporter;
        ZData d("abcd");
        row.change(d);
        EXPECT_EQ(reporter.take_without_lines(), row.report);
        EXPECT_EQ(state_of(d), "own 4/4 abcd");
    }
}

TEST(data, running_out_of_memory_keeps_what_there_was) {
    struct row_t {
        const char* what;
        bool (*change)(ZData& d, const ZString& s);
    };
    constexpr row_t rows[] = {
        {"set_size", [](ZData& d, const ZString&) { return d.set_size(9); }},
        {"set_size far", [](ZData& d, const ZString&) { return d.set_size(INT_MAX); }},
        {"grow", [](ZData& d, const ZString&) { return d.grow(1); }},
        {"grow far", [](ZData& d, const ZString&) { return d.grow(INT_MAX - 4); }},
        {"grow too far", [](ZData& d, const ZString&) { return d.grow(INT_MAX); }},
        {"append_byte", [](ZData& d, const ZString&) { return d.append_byte('e'); }},
        {"append", [](ZData& d, const ZString&) { return d.append("efg", 3); }},
        {"append too much",
         [](ZData& d, const ZString& s) { return d.append(static_cast<const char*>(s), INT_MAX); }},
        {"append itself", [](ZData& d, const ZString&) { return d.append(d); }},
        {"append string", [](ZData& d, const ZString& s) { return d.append(s); }},
        {"+= data", [](ZData& d, const ZString&) { return d += d, true; }},
        {"+= string", [](ZData& d, const ZString& s) { return d += s, true; }},
        {"+= text", [](ZData& d, const ZString&) { return d += "efg", true; }},
        {"= string", [](ZData& d, const ZString& s) { return d = s, true; }},
        {"= text", [](ZData& d, const ZString&) { return d = "xyz", true; }},
        {"copy", [](ZData& d, const ZString&) { return ZData(d).inq_owns(); }},
        {"construct", [](ZData&, const ZString&) { return ZData(8).inq_owns(); }},
        {"set", [](ZData& d, const ZString&) { return d.set("xy", 2); }},
        {"detach",
         [](ZData& d, const ZString&) {
             return d.inq_owns() ? false : std::unique_ptr<unsigned char[]>(d.detach()) != nullptr;
         }},
    };
    const ZString s("efg");
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
                is_done = row.change(d, s);
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
    const std::unique_ptr<unsigned char[]> bytes(new_block("efg")); // never looked at
    ZData d;
    d.refer(bytes.get(), INT_MAX);
    EXPECT_FALSE(d.append_byte('e'));
    EXPECT_FALSE(d.append(bytes.get(), 3));
    EXPECT_FALSE(d.append(bytes.get(), INT_MAX));
    EXPECT_FALSE(d.grow(1));
    EXPECT_EQ(d.inq_n_bytes(), INT_MAX);
    EXPECT_EQ(d.inq_data(), bytes.get());
}

} // namespace
