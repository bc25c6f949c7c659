#include "classlib/errors/ZKVDException.h"
#include "classlib/values/ZKVString.h"
#include "tests/support/allocation_meter.h"
#include "tests/support/recording_reporter.h"

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

TEST(string_arrays, keep_their_first_elements_when_resized) {
    using row_t = std::tuple<int, int, const char*>;
    for (const auto& [before, after, want] :
         {row_t{2, 3, "3: 'a' 'b' null"}, {3, 1, "1: 'a'"}, {3, -7, "-7:"}, {-7, 1, "1: null"}}) {
        ZStringArray array(before);
        for (int i = 0; i < before; ++i)
            array[i] = ZString(1, static_cast<char>('a' + i));
        array.set_n_elements(after);
        const ZStringArray copy(array);
        EXPECT_EQ(elements_of(copy), want);
        EXPECT_TRUE(copy == array);
        array.set_n_elements(after + 1);
        EXPECT_FALSE(copy == array);
    }
}

TEST(string_arrays, an_index_outside_is_reported_and_gives_an_empty_string) {
    for (const auto& [n, i] : {std::pair(2, 2), {2, -1}, {2, INT_MIN}, {2, INT_MAX}, {0, 0}, {-3, -2}}) {
        recording_reporter reporter;
        ZStringArray array(n);
        array[i] = "lost";
        EXPECT_EQ(shown(std::as_const(array)[i]), "null") << n << ", " << i;
        const std::string report = "assertion ZStringArray: i >= 0 && i < m_n_elements;";
        EXPECT_EQ(reporter.take(), report + report) << n << ", " << i;
        EXPECT_TRUE(array == ZStringArray(n));
    }
}

TEST(entries, keep_their_key_and_report_what_is_odd) {
    using row_t = std::tuple<const char*, const char*>;
    for (const auto& [key, report] :
         {row_t{"a_b9Z", ""}, {nullptr, ""}, {"red-eye", "warning ZKV: Illegal keyname: 'red-eye'.;"}}) {
        recording_reporter reporter;
        ZKVString kv(key, "value");
        EXPECT_EQ(reporter.take(), report);
        kv = ZKVString("other", two_texts);
        EXPECT_EQ(plain(kv.inq_key()), plain(key));
        EXPECT_EQ(elements_of(kv.inq_values()), "2: 'a' 'b'");
        EXPECT_EQ(shown(kv.inq_string()), "'a'"); // a single value of two
        EXPECT_EQ(reporter.take(), "warning ZKVString: ;");
    }
}

TEST(entries, are_read_as_what_they_are) {
    const ZKVString two("width", two_texts);
    EXPECT_EQ(&two.as_string(2), &two);
    EXPECT_THROW(static_cast<void>(ZKV(kvtype_string, "w").as_string(0)), std::bad_cast);
    const ZKV none(ZString("w"));
    const ZKV object(kvtype_object, "w");
    using row_t = std::tuple<const ZKV&, const ZKV& (*)(const ZKV& entry), std::string>;
    const row_t rows[] = {{two, [](auto& e) -> auto& {return e.as_integer(1);
}
, "type 'string', expected type 'integer number'"
} // namespace
, {two, [](auto& e) -> auto& {return e.as_float(1);
}
, "type 'string', expected type 'floating point number'"
}
, {two, [](auto& e) -> auto& {return e.as_binary(1);
}
, "type 'string', expected type 'binary data'"
}
, {two, [](auto& e) -> auto& {return e.as_object();
}
, "type 'string', expected type 'ZObject pointer'"
}
, {none, [](auto& e) -> auto& {return e.as_kvd(0);
}
, "type 'unknown type!!!', expected type 'KVD'"
}
, {two, [](auto& e) -> const ZKV& { return e.as_string(1); }, "number of elements '2', expected '1'"}, {
    object, [](auto& e) -> auto& {
        return e.as_object();
    }
    , "number of elements '0', expected '1'"
}
}
;
for (const auto& [entry, read, refusal] : rows) {
    try {
        read(entry);
        ADD_FAILURE() << refusal;
    } catch (const ZKVDException& e) {
        EXPECT_EQ(plain(e.describe()),
                  "Error with KVD key '" + plain(entry.inq_key()) + "': Wrong " + refusal);
    }
}
ZKV kvd(kvtype_kvd, "w");
EXPECT_EQ(&kvd.as_kvd(0), &kvd);
}

TEST(values, go_from_entries_to_arrays_and_back_or_leave_both_valid) {
    const ZKVString two("key", two_texts);
    const ZKV none(ZString("w"));
    using kept_t = std::unique_ptr<ZKVString>;
    using change_t = void (*)(ZStringArray & array, const ZKVString& entry);
    using row_t = std::tuple<change_t, const char*, const char*>; // with and without memory
    const row_t rows[] = {
        {[](auto& array, auto&) { array.set_n_elements(3); }, "3: null null null", "1: null"},
        {[](auto& array, auto& entry) { array.assign_from(entry); }, "2: 'a' 'b'", "0:"},
        {[](auto& array, auto& entry) { array = entry.inq_values(); }, "2: 'a' 'b'", "0:"},
        {[](auto& array, auto&) { array = ZStringArray(kept_t(array.make_kv("k"))->inq_values()); },
         "1: null", "1: null"},
        {[](auto& array, auto& entry) { array = ZStringArray(kept_t(entry.clone())->inq_values()); },
         "2: 'a' 'b'", "1: null"}};
    for (const auto& [change, want, left] : rows) {
        ZStringArray array(1);
        for (int n = 1; runs_out_of_memory(n, [&, change = change] { change(array, two); }); ++n) {
            EXPECT_EQ(elements_of(array), left) << n;
            array = ZStringArray(1);
        }
        EXPECT_EQ(elements_of(array), want);
    }
    ZStringArray array(1);
    EXPECT_THROW(array.assign_from(none), ZKVDException);
    EXPECT_EQ(elements_of(array), "0:");
}

} // namespace
