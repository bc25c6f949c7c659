#include "classlib/errors/ZKVDException.h"
#include "classlib/values/ZKVString.h"
#include "tests/support/allocation_meter.h"
#include "tests/support/recording_reporter.h"

#include <climits>
#include <gtest/gtest.h>
#include <tuple>

namespace {

const std::list<ZString> two_texts = {"a", "b"};
const ZKVString two("two", two_texts);

// "2: 'a' null": the number of elements, and each.
std::string elements_of(const ZStringArray& array) {
    std::string text = std::to_string(array.inq_n_elements()) + ':';
    for (int i = 0; i < array.inq_n_elements(); ++i)
        text += ' ' + shown(array[i]);
    return text;
}

TEST(values, arrays_change_or_stay_valid_without_memory) {
    using kv_t = std::unique_ptr<ZKVString>;
    using row_t = std::tuple<int, void (*)(ZStringArray & array), const char*, const char*>;
    const row_t rows[] = {
        // how many nulls before, and what is left without memory
        {1, [](auto& array) { array.set_n_elements(3); }, "3: null null null", "1: null"},
        {3, [](auto& array) { array.set_n_elements(1); }, "1: null", "3: null null null"},
        {3, [](auto& array) { array.set_n_elements(-7); }, "-7:", ""},
        {-7, [](auto& array) { array.set_n_elements(1); }, "1: null", "-7:"},
        {1, [](auto& array) { array.assign_from(two); }, "2: 'a' 'b'", "0:"},
        {1, [](auto& array) { array = two.inq_values(); }, "2: 'a' 'b'", "0:"},
        {1, [](auto& array) { EXPECT_TRUE(kv_t(array.make_kv("k"))->inq_values() == array); }, "1: null",
         "1: null"},
        {1, [](auto&) { EXPECT_EQ(kv_t(two.clone())->inq_n_elements(), 2); }, "1: null", "1: null"}};
    for (const auto& [n_before, change, want, left] : rows) {
        ZStringArray array(n_before);
        for (int n = 1; runs_out_of_memory(n, [&, change = change] { change(array); }); ++n) {
            EXPECT_EQ(elements_of(array), left) << n;
            array = ZStringArray(n_before);
        }
        EXPECT_EQ(elements_of(array), want);
    }
    ZStringArray array(two.inq_values());
    array.set_n_elements(3);
    EXPECT_EQ(elements_of(array), "3: 'a' 'b' null");
    array.set_n_elements(1);
    EXPECT_TRUE(array == ZStringArray(ZKVString("k", "a")));
    EXPECT_FALSE(array == ZStringArray(1) || array == two.inq_values());
    EXPECT_THROW(array.assign_from(ZKV(ZString("w"))), ZKVDException);
    EXPECT_EQ(elements_of(array), "0:");
}

TEST(values, an_index_outside_is_reported_and_gives_an_empty_string) {
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

TEST(values, entries_keep_their_key_and_report_what_is_odd) {
    using row_t = std::tuple<const char*, const char*>;
    for (const auto& [key, report] :
         {row_t{"a_b9Z", ""}, {nullptr, ""}, {"red-eye", "warning ZKV: Illegal keyname: 'red-eye'.;"}}) {
        recording_reporter reporter;
        ZKVString kv(key, "value");
        EXPECT_EQ(reporter.take(), report);
        kv = two;
        EXPECT_EQ(plain(kv.inq_key()), plain(key));
        EXPECT_EQ(shown(kv.inq_string()), "'a'"); // a single value of two
        EXPECT_EQ(reporter.take(), "warning ZKVString: ;");
    }
}

TEST(values, entries_are_read_as_what_they_are) {
    EXPECT_EQ(&two.as_string(2), &two);
    EXPECT_THROW(static_cast<void>(ZKV(kvtype_string, "w").as_string(0)), std::bad_cast);
    const ZKV kvd(kvtype_kvd, "w");
    EXPECT_EQ(&kvd.as_kvd(0), &kvd);
    using row_t = std::tuple<ZKV, void (*)(const ZKV& kv), std::string>;
    const row_t rows[] = {
        {kvd, [](auto& kv) { static_cast<void>(kv.as_integer(0)); },
         "type 'KVD', expected type 'integer number'"},
        {kvd, [](auto& kv) { static_cast<void>(kv.as_float(0)); },
         "type 'KVD', expected type 'floating point number'"},
        {kvd, [](auto& kv) { static_cast<void>(kv.as_string(0)); }, "type 'KVD', expected type 'string'"},
        {kvd, [](auto& kv) { static_cast<void>(kv.as_binary(0)); },
         "type 'KVD', expected type 'binary data'"},
        {kvd, [](auto& kv) { static_cast<void>(kv.as_object()); },
         "type 'KVD', expected type 'ZObject pointer'"},
        {ZKV(ZString("w")), [](auto& kv) { kv.check_type(kvtype_kvd, 0); },
         "type 'unknown type!!!', expected type 'KVD'"},
        {kvd, [](auto& kv) { static_cast<void>(kv.as_kvd(3)); }, "number of elements '0', expected '3'"}};
    for (const auto& [kv, read, refusal] : rows) {
        try {
            read(kv);
            ADD_FAILURE() << refusal;
        } catch (const ZKVDException& e) {
            EXPECT_EQ(plain(e.describe()), "Error with KVD key 'w': Wrong " + refusal);
        }
    }
}

} // namespace
