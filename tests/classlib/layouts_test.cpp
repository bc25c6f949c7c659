#include "classlib/errors/ZException.h"
#include "classlib/streams/ZMemoryRStream.h"
#include "classlib/values/ZKVString.h"

#include <array>
#include <cstring>
#include <gtest/gtest.h>

// The places of the fields: hosts rely on them.
namespace {

constexpr std::size_t pointer = sizeof(void*);

using numbers_t = std::array<std::int32_t, 4>;

// The field that stands in an object at an offset in bytes.
template <typename Field>
Field field(const auto& object, std::size_t offset) {
    Field value{};
    std::memcpy(&value, reinterpret_cast<const std::byte*>(&object) + offset, sizeof value);
    return value;
}

TEST(layouts, fields_stand_in_their_order) {
    ZString s("text");
    s.seek(0);
    s << base16 << left_justify << scientific;
    s.set_width(7);
    s.set_fill('*');
    s.set_precision(9);
    EXPECT_EQ(field<numbers_t>(s, pointer), (numbers_t{8, 16, 3, 7})); // error, base, flags, width
    EXPECT_EQ(field<char>(s, pointer + 16), '*');
    EXPECT_EQ(field<int>(s, pointer + 20), 9); // precision
    EXPECT_EQ(field<const char*>(s, pointer + 24), static_cast<const char*>(s));

    ZMemoryRStream in("\nabc", 4);
    EXPECT_EQ(in.get() + in.get(), '\n' + 'a');
    EXPECT_EQ(field<numbers_t>(in, 2 * pointer), (numbers_t{4, 2, 2, 1})); // size, index, position, line
    in.seek(0);
    EXPECT_EQ(field<int>(in, 2 * pointer + 16), rstreamerr_unsupported);

    const ZKVString entry("key", "value");
    EXPECT_EQ(field<int>(entry, pointer), kvtype_string);
    EXPECT_EQ(field<const void*>(entry, pointer + sizeof s), static_cast<const char*>(entry.inq_key()));
    EXPECT_EQ(field<const void*>(entry.inq_values(), pointer), &entry.inq_values()[0]);

    const ZException exception("ID", 5);
    EXPECT_EQ(field<const char*>(exception, pointer), exception.inq_id());
}

} // namespace
