#include "classlib/errors/ZException.h"
#include "classlib/streams/ZData.h"
#include "classlib/streams/ZMemoryRStream.h"
#include "classlib/values/ZKVString.h"

#include <cstring>
#include <gtest/gtest.h>

// The places of the fields: hosts rely on them.
namespace {

constexpr std::size_t pointer = sizeof(void*);
using numbers_t = std::vector<std::int32_t>;

// The fields that stand in an object at an offset in bytes: n numbers, or a pointer.
numbers_t numbers(const void* object, std::size_t offset, std::size_t n) {
    numbers_t values(n);
    std::memcpy(values.data(), static_cast<const std::byte*>(object) + offset, n * sizeof values[0]);
    return values;
}

const void* pointer_at(const void* object, std::size_t offset) {
    const void* value = nullptr;
    std::memcpy(&value, static_cast<const std::byte*>(object) + offset, sizeof value);
    return value;
}

TEST(layouts, fields_stand_in_their_order) {
    ZString s("text");
    s.seek(0);
    s << base16 << left_justify << scientific;
    s.set_width(7);
    s.set_fill('*');
    s.set_precision(9);
    EXPECT_EQ(numbers(&s, pointer, 4), (numbers_t{8, 16, 3, 7})); // error, base, flags, width
    EXPECT_EQ(*(reinterpret_cast<const char*>(&s) + pointer + 16), '*');
    EXPECT_EQ(numbers(&s, pointer + 20, 1), numbers_t{9}); // precision
    EXPECT_EQ(pointer_at(&s, pointer + 24), static_cast<const char*>(s));

    ZMemoryRStream in("\nabc", 4);
    EXPECT_EQ(in.get() + in.get(), '\n' + 'a');
    in.seek(0);
    EXPECT_EQ(numbers(&in, 2 * pointer, 5), (numbers_t{4, 2, 2, 1, 8})); // size, index, position, line, error

    ZData data("abc");
    data.truncate(2);
    EXPECT_EQ(*reinterpret_cast<const bool*>(&data), true); // whether it owns its block
    EXPECT_EQ(numbers(&data, 4, 2), (numbers_t{2, 3}));     // bytes in use, bytes allocated
    EXPECT_EQ(pointer_at(&data, sizeof data - pointer), data.inq_data());

    const ZKVString entry("key", "value");
    EXPECT_EQ(numbers(&entry, pointer, 1), numbers_t{kvtype_string});
    EXPECT_EQ(pointer_at(&entry, 2 * pointer + sizeof s - pointer),
              static_cast<const char*>(entry.inq_key()));
    EXPECT_EQ(numbers(&entry.inq_values(), 0, 1), numbers_t{1});
    EXPECT_EQ(pointer_at(&entry.inq_values(), pointer), &entry.inq_values()[0]);

    const ZException exception("ID", 5);
    EXPECT_EQ(pointer_at(&exception, pointer), exception.inq_id());
    EXPECT_EQ(numbers(&exception, 2 * pointer, 1), numbers_t{5});
}

} // namespace
