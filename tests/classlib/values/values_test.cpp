#include "classlib/errors/ZKVDException.h"
#include "classlib/values/ZKV.h"
#include "classlib/values/ZKVString.h"
#include "classlib/values/ZStringArray.h"
#include "tests/support/allocation_meter.h"
#include "tests/support/recording_reporter.h"
#include "tests/support/shown_text.h"

#include <climits>
#include <gtest/gtest.h>
#include <initializer_list>
#include <list>
#include <memory>
#include <new>
#include <string>
#include <tuple>
#include <typeinfo>
#include <utility>

namespace {

ZStringArray array_of(std::initializer_list<const char*> texts) {
    ZStringArray array(static_cast<int>(texts.size()));
    for (int i = 0; const char* const text : texts)
        array[i++] = text;
    return array;
}

// "2: 'a' null": the number of elements, and each.
std::string elements_of(const ZStringArray& array) {
    std::string text = std::to_string(array.inq_n_elements()) + ':';
    for (int i = 0; i < array.inq_n_elements(); ++i)
        text += ' ' + shown(array[i]);
    return text;
}

// "key 2: 'a' null"
std::string contents_of(const ZKVString& kv) {
    return plain(kv.inq_key()) + ' ' + elements_of(kv.inq_values());
}

TEST(string_arrays, sizes) {
    using row_t = std::tuple<int, int, const char*>;
    const row_t rows[] = {{3, 3, "3: 'a' 'b' 'c'"}, {3, 5, "5: 'a' 'b' 'c' null null"},
                          {3, 1, "1: 'a'"},         {3, 0, "0:"},
                          {3, -7, "-7:"},           {0, 2, "2: null null"},
                          {-7, 1, "1: null"},       {-7, 0, "0:"}};
    for (const auto& [before, after, want] : rows) {
        ZStringArray array(before);
        for (int i = 0; i < before; ++i)
            array[i] = ZString(1, static_cast<char>('a' + i));
        array.set_n_elements(after);
        EXPECT_EQ(elements_of(array), want) << before << ", " << after;
        const ZStringArray copy(array);
        EXPECT_EQ(elements_of(copy), want);
        ZStringArray assigned = array_of({"x"});
        assigned = copy;
        EXPECT_EQ(elements_of(assigned), want);
        EXPECT_TRUE(assigned == array);
        const ZStringArray moved(std::move(assigned));
        EXPECT_EQ(elements_of(moved), want);
    }
    EXPECT_EQ(elements_of(ZStringArray()), "0:");
}

TEST(string_arrays, copies_share_nothing) {
    ZStringArray array = array_of({"a", "b"});
    const ZStringArray copy(array);
    array[0] = "changed";
    EXPECT_EQ(elements_of(copy), "2: 'a' 'b'");
    const ZStringArray& same = array;
    array = same;
    EXPECT_EQ(elements_of(array), "2: 'changed' 'b'");
}

TEST(string_arrays, comparison) {
    using row_t = std::tuple<ZStringArray, ZStringArray, bool>;
    const row_t rows[] = {{ZStringArray(), ZStringArray(0), true},
                          {ZStringArray(-3), ZStringArray(-3), true},
                          {ZStringArray(-3), ZStringArray(-2), false},
                          {ZStringArray(1), ZStringArray(2), false},
                          {ZStringArray(1), array_of({""}), true},
                          {array_of({"a", "b"}), array_of({"a", "b"}), true},
                          {array_of({"a", "b"}), array_of({"a", "B"}), false},
                          {array_of({"a"}), array_of({"a", "b"}), false}};
    for (const auto& [a, b, is_equal] : rows) {
        EXPECT_EQ(a == b, is_equal) << elements_of(a) << " and " << elements_of(b);
        EXPECT_EQ(b == a, is_equal) << elements_of(a) << " and " << elements_of(b);
    }
}

TEST(string_arrays, an_index_outside_is_reported_and_gives_an_empty_string) {
    for (const auto& [n, i] :
         {std::pair(2, 2), {2, -1}, {2, INT_MIN}, {2, INT_MAX}, {0, 0}, {-1, 0}, {-3, -2}}) {
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
    const ZStringArray array = array_of({"a", "b"});
    const std::unique_ptr<ZKVString> kv(array.make_kv("key"));
    EXPECT_EQ(contents_of(*kv), "key 2: 'a' 'b'");
    EXPECT_EQ(elements_of(ZStringArray(*kv)), "2: 'a' 'b'");
    ZStringArray target = array_of({"x"});
    target.assign_from(ZKVString("key", "one"));
    EXPECT_EQ(elements_of(target), "1: 'one'");
    target.assign_from(ZKVString("key", ZStringArray()));
    EXPECT_EQ(elements_of(target), "0:");

    target = array;
    EXPECT_THROW(target.assign_from(ZKV(kvtype_float, "key")), ZKVDException);
    EXPECT_EQ(elements_of(target), "0:");
    EXPECT_THROW(ZStringArray(ZKV("key")), ZKVDException);
}

TEST(entries, keys_are_checked_and_kept) {
    using row_t = std::tuple<const char*, const char*>;
    const row_t rows[] = {{"a_b9Z", ""},
                          {"", ""},
                          {nullptr, ""},
                          {"red-eye", "warning ZKV: Illegal keyname: 'red-eye'.;"},
                          {"a.b.c", "warning ZKV: Illegal keyname: 'a.b.c'.;"},
                          {" ", "warning ZKV: Illegal keyname: ' '.;"}};
    for (const auto& [key, reports] : rows) {
        recording_reporter reporter;
        const ZKV kv(kvtype_float, key);
        EXPECT_EQ(reporter.take_without_lines(), reports);
        const ZKVString by_value(key, "value");
        EXPECT_EQ(reporter.take_without_lines(), reports);
        const ZKVString by_array(key, ZStringArray());
        EXPECT_EQ(reporter.take_without_lines(), reports);
        const ZKVString by_list(key, std::list<ZString>());
        EXPECT_EQ(reporter.take_without_lines(), reports);

        const ZKV copy(kv);
        const ZKV untyped{ZString(key)};
        ZKV assigned(kvtype_none, "other");
        assigned = kv;
        const ZKVString string_copy(by_value);
        EXPECT_EQ(reporter.take_without_lines(), "");
        EXPECT_EQ(plain(copy.inq_key()) + plain(assigned.inq_key()), plain(key) + plain(key));
        EXPECT_EQ(assigned.inq_type(), kvtype_float);
        EXPECT_EQ(untyped.inq_type(), kvtype_none);
    }
}

TEST(entries, names_of_types) {
    using row_t = std::tuple<int, const char*>;
    const row_t rows[] = {{0, "integer number"},
                          {1, "floating point number"},
                          {2, "string"},
                          {3, "binary data"},
                          {4, "KVD"},
                          {5, "ZObject pointer"},
                          {6, "unknown type!!!"},
                          {7, "unknown type!!!"},
                          {-1, "unknown type!!!"}};
    for (const auto& [type, name] : rows)
        EXPECT_STREQ(ZKV::type_name(static_cast<kvtype_t>(type)), name) << type;
}

// An entry of any type and size.
class sized_kv final : public ZKV {
public:
    sized_kv(kvtype_t type, int n_elements) : ZKV(type, "width"), m_n_elements(n_elements) {}
    [[nodiscard]] int inq_n_elements() const override { return m_n_elements; }

private:
    int m_n_elements;
};

// What a typed reading of an entry throws, described.
template <typename Reading>
std::string complaint_of(Reading&& read) {
    try {
        read();
        return "";
    } catch (const ZKVDException& e) {
        return plain(e.describe());
    }
}

TEST(entries, are_read_as_what_they_are) {
    struct row_t {
        kvtype_t type;
        const ZKV& (ZKV::*read)(int n_elements) const;
        ZKV& (ZKV::*change)(int n_elements);
    };
    const row_t rows[] = {{kvtype_integer, &ZKV::as_integer, &ZKV::as_integer},
                          {kvtype_float, &ZKV::as_float, &ZKV::as_float},
                          {kvtype_binary, &ZKV::as_binary, &ZKV::as_binary},
                          {kvtype_kvd, &ZKV::as_kvd, &ZKV::as_kvd}};
    for (const row_t& row : rows) {
        SCOPED_TRACE(row.type);
        sized_kv kv(row.type, 3);
        EXPECT_EQ(&(kv.*row.read)(3), &kv);
        EXPECT_EQ(&(kv.*row.read)(0), &kv);
        EXPECT_EQ(&(kv.*row.change)(3), &kv);
        EXPECT_EQ(complaint_of([&] { (kv.*row.read)(2); }),
                  "Error with KVD key 'width': Wrong number of elements '3', expected '2'");
        EXPECT_EQ(complaint_of([&] { (sized_kv(kvtype_string, 3).*row.change)(2); }), // of the type only
                  "Error with KVD key 'width': Wrong type 'string', expected type '" +
                      plain(ZKV::type_name(row.type)) + "'");
    }
    sized_kv object(kvtype_object, 1);
    EXPECT_EQ(&object.as_object(), &object);
    EXPECT_EQ(&std::as_const(object).as_object(), &object);
    EXPECT_EQ(complaint_of([] { static_cast<void>(sized_kv(kvtype_object, 2).as_object()); }),
              "Error with KVD key 'width': Wrong number of elements '2', expected '1'");

    ZKVString three("width", array_of({"a", "b", "c"}));
    const ZKV& entry = three;
    EXPECT_EQ(&entry.as_string(0), &three);
    EXPECT_EQ(&static_cast<ZKV&>(three).as_string(3), &three);
    EXPECT_EQ(complaint_of([&] { static_cast<void>(entry.as_string(1)); }),
              "Error with KVD key 'width': Wrong number of elements '3', expected '1'");
    EXPECT_EQ(complaint_of([&] { static_cast<void>(entry.as_integer(1)); }),
              "Error with KVD key 'width': Wrong type 'string', expected type 'integer number'");
    EXPECT_EQ(complaint_of([&] { ZKV(ZString("w")).check_type(kvtype_kvd, 0); }),
              "Error with KVD key 'w': Wrong type 'unknown type!!!', expected type 'KVD'");
    EXPECT_EQ(complaint_of([&] { ZKVString("w", ZStringArray()).check_type(kvtype_string, 0); }), "");
    EXPECT_THROW(static_cast<void>(sized_kv(kvtype_string, 1).as_string(1)), std::bad_cast);
}

TEST(entries, of_strings) {
    const ZKVString one("key", "value");
    const ZKVString two("other", std::list<ZString>{"a", "b"});
    EXPECT_EQ(contents_of(one), "key 1: 'value'");
    EXPECT_EQ(contents_of(two), "other 2: 'a' 'b'");
    EXPECT_EQ(ZKVString("key", std::list<ZString>()).inq_n_elements(), 0);
    const std::unique_ptr<const ZKV> clone(static_cast<const ZKV&>(two).clone());
    EXPECT_EQ(contents_of(clone->as_string(2)), "other 2: 'a' 'b'");
    EXPECT_EQ(ZKV("key").clone(), nullptr);
    EXPECT_EQ(ZKV("key").inq_n_elements(), 0);

    ZKVString assigned(one);
    assigned = two;
    EXPECT_EQ(contents_of(assigned), "key 2: 'a' 'b'"); // the key stays
    const ZKVString& same = assigned;
    assigned = same;
    EXPECT_EQ(contents_of(assigned), "key 2: 'a' 'b'");
}

TEST(entries, a_single_value_of_many_or_none_is_reported) {
    constexpr const char* warning = "warning ZKVString: ;";
    using row_t = std::tuple<ZStringArray, const char*, std::string>;
    const row_t rows[] = {{array_of({"a"}), "'a'", ""},
                          {array_of({"a", "b"}), "'a'", warning},
                          {ZStringArray(), "null",
                           warning + std::string("assertion ZStringArray: i >= 0 && i < m_n_elements;")}};
    for (const auto& [values, want, reports] : rows) {
        recording_reporter reporter;
        const ZKVString kv("key", values);
        EXPECT_EQ(shown(kv.inq_string()), want);
        EXPECT_EQ(reporter.take_without_lines(), reports);
    }
}

TEST(values, running_out_of_memory_leaks_nothing_and_leaves_them_valid) {
    struct values_t {
        ZStringArray array = array_of({"a", "b"});
        ZKVString kv = ZKVString("key", array_of({"x", "y"}));
    };
    struct row_t {
        void (*change)(values_t& values, const ZString& text);
        const char* after_failure;
    };
    constexpr const char* unchanged = "2: 'a' 'b', key 2: 'x' 'y'";
    const row_t rows[] = {
        {[](values_t& v, const ZString&) { v.array.set_n_elements(3); }, unchanged},
        {[](values_t& v, const ZString&) { v.array.set_n_elements(1); }, unchanged},
        {[](values_t& v, const ZString&) { static_cast<void>(ZStringArray(v.array)); }, unchanged},
        {[](values_t& v, const ZString&) { v.array = v.kv.inq_values(); }, "0:, key 2: 'x' 'y'"},
        {[](values_t& v, const ZString&) { v.array.assign_from(v.kv); }, "0:, key 2: 'x' 'y'"},
        {[](values_t& v, const ZString&) { v.kv = ZKVString(v.kv.inq_key(), v.array); }, nullptr},
        {[](values_t& v, const ZString& text) { const std::unique_ptr<ZKV> kv(v.array.make_kv(text)); },
         unchanged},
        {[](values_t& v, const ZString&) { const std::unique_ptr<ZKV> kv(v.kv.clone()); }, unchanged},
        {[](values_t&, const ZString& text) { static_cast<void>(ZKVString(text, text)); }, unchanged},
        {[](values_t& v, const ZString& text) {
             EXPECT_NE(complaint_of([&] { v.array = ZStringArray(ZKV(text)); }), "");
         },
         unchanged},
    };
    const ZString text("text");
    for (const row_t& row : rows) {
        bool has_failed = true;
        for (int n = 1; has_failed; ++n) {
            SCOPED_TRACE(testing::Message() << &row - rows << ", " << n);
            int n_held = 0;
            {
                values_t values;
                allocation_meter::section section(n);
                try {
                    row.change(values, text);
                } catch (const std::bad_alloc&) {
                    EXPECT_TRUE(section.inq_failed());
                }
                section.stop();
                has_failed = section.inq_failed();
                const std::string after = elements_of(values.array) + ", " + contents_of(values.kv);
                if (has_failed && row.after_failure != nullptr) {
                    EXPECT_EQ(after, row.after_failure);
                }
                values = values_t();
                n_held = section.inq_held();
            }
            EXPECT_EQ(n_held, 0);
        }
    }
}

} // namespace
