#include "classlib/errors/ZKVDException.h"
#include "classlib/values/ZKV.h"
#include "classlib/values/ZKVString.h"
#include "classlib/values/ZStringArray.h"
#include "tests/support/recording_reporter.h"
#include "tests/support/runs_out_of_memory.h"
#include "tests/support/shown_text.h"

#include <climits>
#include <gtest/gtest.h>
#include <list>
#include <memory>
#include <string>
#include <tuple>
#include <typeinfo>
#include <utility>

namespace {

const std::list<ZString> two_texts = {"a", "b"};

// "2: 'a' null": the number of elements, and each.
std::string elements_of(const ZStringArray& array) {
    std::string text = std::to_string(array.inq_n_elements()) + ':';
    for (int i = 0; i < array.inq_n_elements(); ++i)
        text += ' ' + shown(array[i]);
    return text;
}

TEST(string_arrays, sizes) {
    using row_t = std::tuple<int, int, const char*>;
    const row_t rows[] = {
        {2, 4, "4: 'a' 'b' null null"}, {3, 1, "1: 'a'"}, {3, -7, "-7:"}, {-7, 1, "1: null"}};
    for (const auto& [before, after, want] : rows) {
        ZStringArray array(before);
        for (int i = 0; i < before; ++i)
            array[i] = ZString(1, static_cast<char>('a' + i));
        array.set_n_elements(after);
        const ZStringArray copy(array);
        EXPECT_EQ(elements_of(array), want) << before << ", " << after;
        EXPECT_TRUE(copy == array);
        array.set_n_elements(after + 1);
        EXPECT_FALSE(copy == array);
        EXPECT_EQ(elements_of(copy), want);
    }
}

TEST(string_arrays, an_index_outside_is_reported_and_gives_an_empty_string) {
    for (const auto& [n, i] : {std::pair(2, 2), {2, -1}, {2, INT_MIN}, {2, INT_MAX}, {0, 0}, {-3, -2}}) {
        recording_reporter reporter;
        ZStringArray array(n);
        array[i] = "lost";
        EXPECT_EQ(shown(std::as_const(array)[i]), "null") << n << ", " << i;
        constexpr const char* report = "assertion ZStringArray: i >= 0 && i < m_n_elements;";
        EXPECT_EQ(reporter.take_without_lines(), std::string(report) + report) << n << ", " << i;
        EXPECT_TRUE(array == ZStringArray(n));
    }
}

TEST(string_arrays, go_into_entries_and_come_back) {
    ZStringArray array(ZKVString("key", two_texts));
    EXPECT_EQ(elements_of(array), "2: 'a' 'b'");
    const std::unique_ptr<ZKVString> kv(array.make_kv("key"));
    EXPECT_TRUE(kv->inq_values() == array);
    EXPECT_THROW(array.assign_from(ZKV(kvtype_float, "key")), ZKVDException);
    EXPECT_EQ(elements_of(array), "0:");
}

TEST(entries, keys_are_checked_and_kept) {
    using row_t = std::tuple<const char*, const char*>;
    const row_t rows[] = {{"a_b9Z", ""},
                          {nullptr, ""},
                          {"red-eye", "warning ZKV: Illegal keyname: 'red-eye'.;"},
                          {" ", "warning ZKV: Illegal keyname: ' '.;"}};
    for (const auto& [key, report] : rows) {
        recording_reporter reporter;
        const ZKVString kv(key, "value");
        EXPECT_EQ(reporter.take_without_lines(), report);
        ZKVString copy(kv);
        copy = ZKVString("other", two_texts);
        EXPECT_EQ(reporter.take_without_lines(), "");
        EXPECT_EQ(plain(copy.inq_key()), plain(key)); // the key stays
        EXPECT_EQ(elements_of(copy.inq_values()), "2: 'a' 'b'");
    }
}

TEST(entries, a_single_value_of_many_or_none_is_reported) {
    recording_reporter reporter;
    EXPECT_EQ(shown(ZKVString("key", two_texts).inq_string()), "'a'");
    EXPECT_EQ(reporter.take_without_lines(), "warning ZKVString: ;");
    EXPECT_EQ(shown(ZKVString("key", ZStringArray()).inq_string()), "null");
    EXPECT_EQ(reporter.take_without_lines(),
              "warning ZKVString: ;assertion ZStringArray: i >= 0 && i < m_n_elements;");
}

std::string complaint_of(const ZKV& kv, kvtype_t type, int n_elements) {
    try {
        kv.check_type(type, n_elements);
        return "";
    } catch (const ZKVDException& e) {
        return plain(e.describe());
    }
}

TEST(entries, are_read_as_what_they_are) {
    const ZKVString two("width", two_texts);
    const ZKV& entry = two;
    EXPECT_EQ(&entry.as_string(2), &two);
    EXPECT_THROW(static_cast<void>(entry.as_integer(1)), ZKVDException);
    EXPECT_THROW(static_cast<void>(ZKV(kvtype_string, "w").as_string(0)), std::bad_cast);
    EXPECT_EQ(complaint_of(two, kvtype_string, 1),
              "Error with KVD key 'width': Wrong number of elements '2', expected '1'");
    EXPECT_EQ(complaint_of(two, kvtype_float, 1),
              "Error with KVD key 'width': Wrong type 'string', expected type 'floating point number'");
    EXPECT_EQ(complaint_of(ZKV(ZString("w")), kvtype_kvd, 0),
              "Error with KVD key 'w': Wrong type 'unknown type!!!', expected type 'KVD'");
}

TEST(values, running_out_of_memory_leaves_them_valid) {
    const ZKVString two("key", two_texts);
    using change_t = void (*)(ZStringArray&, const ZKVString&);
    const std::pair<change_t, const char*> rows[] = {
        {[](auto& array, auto&) { array.set_n_elements(3); }, "1: null"},
        {[](auto& array, auto& kv) { array.assign_from(kv); }, "0:"},
        {[](auto& array, auto& kv) { array = kv.inq_values(); }, "0:"},
        {[](auto& array, auto&) { const std::unique_ptr<ZKV> made(array.make_kv("key")); }, "1: null"},
        {[](auto&, auto& kv) { const std::unique_ptr<ZKV> clone(kv.clone()); }, "1: null"},
    };
    for (const auto& row : rows) {
        ZStringArray array(1);
        for (int n = 1; runs_out_of_memory(n, [&] { row.first(array, two); }); ++n) {
            EXPECT_EQ(elements_of(array), row.second) << n;
            array = ZStringArray(1);
        }
    }
}

} // namespace
