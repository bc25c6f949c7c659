#include "classlib/errors/ZException.h"
#include "classlib/streams/ZData.h"
#include "classlib/streams/ZMemoryRStream.h"
#include "classlib/values/ZKVString.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <tuple>

// The places of the fields: hosts rely on them.
namespace {

constexpr std::size_t pointer = sizeof(void*);

// The field of an object at an offset in bytes.
template <typename Field = std::int32_t>
std::intptr_t field(const void* object, std::size_t offset) {
    Field value{};
    std::memcpy(&value, static_cast<const std::byte*>(object) + offset, sizeof value);
    return std::intptr_t{value};
}

std::intptr_t address(const void* target) {
    return reinterpret_cast<std::intptr_t>(target);
}

TEST(layouts, fields_stand_in_their_order) {
    ZString s("text");
    s.seek(0);
    s.set_base(16);
    s << left_justify << scientific;
    s.set_width(7);
    s.set_fill('*');
    s.set_precision(9);
    ZMemoryRStream in("\nabc", 4);
    in.get();
    in.get();
    in.seek(0);
    ZData data("abc");
    data.truncate(2);
    const ZKVString kv("key", "value");
    const ZException exception("ID", 5);
    static_assert(sizeof(ZString) == 2 * pointer + 6 * 4);
    static_assert(sizeof(ZData) == 12 + 4 * (pointer / 8) + pointer);
    static_assert(sizeof(ZStringArray) == 2 * pointer);
    constexpr std::size_t key = pointer + pointer; // behind the type and its padding
    const std::tuple<const char*, std::intptr_t, std::intptr_t> rows[] = {
        {"string error", field(&s, pointer), 8},
        {"string base", field(&s, pointer + 4), 16},
        {"string flags", field(&s, pointer + 8), wsflag_left | wsflag_scientific},
        {"string width", field(&s, pointer + 12), 7},
        {"string fill", field<char>(&s, pointer + 16), '*'},
        {"string precision", field(&s, pointer + 20), 9},
        {"string text", field<std::intptr_t>(&s, pointer + 24), address(static_cast<const char*>(s))},
        {"stream size", field(&in, 2 * pointer), 4},
        {"stream index", field(&in, 2 * pointer + 4), 2},
        {"stream position", field(&in, 2 * pointer + 8), 2},
        {"stream line", field(&in, 2 * pointer + 12), 1},
        {"stream error", field(&in, 2 * pointer + 16), 8},
        {"data own", field<bool>(&data, 0), 1},
        {"data bytes", field(&data, 4), 2},
        {"data size", field(&data, 8), 3},
        {"data block", field<std::intptr_t>(&data, sizeof data - pointer), address(data.inq_data())},
        {"entry type", field(&kv, pointer), 2},
        {"entry key", key, address(&kv.inq_key()) - address(&kv)},
        {"array count", field(&kv.inq_values(), 0), 1},
        {"array", field<std::intptr_t>(&kv.inq_values(), pointer), address(&kv.inq_values()[0])},
        {"exception id", field<std::intptr_t>(&exception, pointer), address(exception.inq_id())},
        {"exception code", field(&exception, 2 * pointer), 5},
    };
    for (const auto& [name, value, want] : rows)
        EXPECT_EQ(value, want) << name;
}

} // namespace
