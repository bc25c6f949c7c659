#include "classlib/errors/ZKVDException.h"
#include "classlib/values/ZKVString.h"
#include "tests/support/allocation_meter.h"
#include "tests/support/recording_reporter.h"

#include <climits>
#include <tuple>

namespace {

const ZKVString two("two", std::list<ZString>{"a", "b"});

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
        {1, [](auto&) { EXPECT_EQ(kv_t(two.clone())->inq_n_elements(), 2); }, "1: null", "1: null"},
        {1, [](auto& array) { array = two.inq_values(); }, "2: 'a' 'b'", "0:"},
        {1, [](auto& array) { EXPECT_TRUE(kv_t(array.make_kv("k"))->inq_values() == array); }, "1: null",
         "1: null"}};
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

TEST(values, misuse_is_reported_and_harmless) {
    recording_reporter reporter;
    for (const auto& [n, i] : {std::pair(2, 2), {2, -1}, {2, INT_MAX}, {-3, -2}}) {
        ZStringArray array(n);
        array[i] = "lost";
        EXPECT_EQ(shown(std::as_const(array)[i]), "null") << n << ", " << i;
        const std::string report = "assertion ZStringArray: i >= 0 && i < m_n_elements;";
        EXPECT_EQ(reporter.take(), report + report) << n << ", " << i;
    }
    ZKVString kv("a_b9Z", "value");
    kv = two;
    EXPECT_EQ(shown(kv.inq_key()) + shown(kv.inq_string()), "'a_b9Z''a'"); // one of two values
    EXPECT_EQ(reporter.take(), "warning ZKVString: ;");
}

TEST(values, entries_are_read_as_what_they_are) {
    EXPECT_EQ(&two.as_string(2), &two);
    EXPECT_THROW(static_cast<void>(ZKV(kvtype_string, "w").as_string(0)), std::bad_cast);
    const ZKV kvd(kvtype_kvd, "w");
    EXPECT_EQ(&kvd.as_kvd(0), &kvd);
    const std::string got_kvd = "type 'KVD', expected type ";
    using row_t = std::tuple<ZKV, void (*)(const ZKV& kv), std::string>;
    const row_t rows[] = {
        {kvd, [](auto& kv) { static_cast<void>(kv.as_float(0)); }, got_kvd + "'floating point number'"},
        {kvd, [](auto& kv) { static_cast<void>(kv.as_string(0)); }, got_kvd + "'string'"},
        {kvd, [](auto& kv) { static_cast<void>(kv.as_binary(0)); }, got_kvd + "'binary data'"},
        {kvd, [](auto& kv) { static_cast<void>(kv.as_object()); }, got_kvd + "'ZObject pointer'"},
        {ZKV("w"), [](auto& kv) { kv.check_type(kvtype_kvd, 0); },
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
