#include "classlib/errors/ZException.h"
#include "classlib/streams/ZData.h"
#include "classlib/streams/ZMemoryRStream.h"
#include "classlib/strings/ZString.h"
#include "classlib/values/ZKVString.h"
#include "classlib/values/ZStringArray.h"

#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>

// The fields of the classes, in their order: hosts rely on it.
namespace {

// An object's bytes as the fields that they should be.
template <typename Fields, typename Object>
Fields fields_of(const Object& object) {
    static_assert(sizeof(Fields) == sizeof(Object));
    Fields fields{};
    std::memcpy(&fields, static_cast<const void*>(&object), sizeof fields);
    return fields;
}

struct string_fields_t {
    const void* vtable;
    std::int32_t error;
    std::int32_t base;
    std::uint32_t flags;
    std::int32_t width;
    char fill;
    std::int32_t precision;
    const char* text;
};

struct array_fields_t {
    std::int32_t n_elements;
    const ZString* elements;
};

TEST(layouts, byte_string) {
    const auto fresh = fields_of<string_fields_t>(ZString());
    EXPECT_TRUE(fresh.error == 0 && fresh.base == 10 && fresh.flags == 0 && fresh.width == 0);
    EXPECT_TRUE(fresh.fill == ' ' && fresh.precision == 6 && fresh.text == nullptr);

    ZString s("text");
    s.seek(0);
    s.set_base(16);
    s.set_flag(wsflag_scientific);
    s.set_width(7);
    s.set_fill('*');
    s.set_precision(9);
    const auto fields = fields_of<string_fields_t>(s);
    EXPECT_TRUE(fields.error == 8 && fields.base == 16 && fields.flags == 2 && fields.width == 7);
    EXPECT_TRUE(fields.fill == '*' && fields.precision == 9);
    EXPECT_EQ(fields.text, static_cast<const char*>(s));
    s << left_justify;
    EXPECT_EQ(fields_of<string_fields_t>(s).flags, 3U);
}

TEST(layouts, read_stream) {
    struct fields_t {
        const void* vtable;
        const char* buffer;
        std::int32_t size;
        std::int32_t index;
        std::int32_t position;
        std::int32_t line;
        std::int32_t error;
        std::int32_t n_bytes; // of the derived class
    };
    const char* const bytes = "\nabc";
    ZMemoryRStream in(bytes, 4);
    in.get();
    in.get();
    EXPECT_EQ(in.seek(0), -1);
    const auto fields = fields_of<fields_t>(in);
    EXPECT_EQ(fields.buffer, bytes);
    EXPECT_TRUE(fields.size == 4 && fields.index == 2 && fields.position == 2 && fields.line == 1);
    EXPECT_TRUE(fields.error == 8 && fields.n_bytes == 4);
}

TEST(layouts, byte_buffer) {
    struct fields_t {
        bool own;
        std::int32_t nbytes;
        std::int32_t data_size;
        const unsigned char* data;
    };
    ZData data("abc");
    data.truncate(2);
    const auto fields = fields_of<fields_t>(data);
    EXPECT_TRUE(fields.own && fields.nbytes == 2 && fields.data_size == 3);
    EXPECT_EQ(fields.data, data.inq_data());
}

TEST(layouts, values_and_exceptions) {
    struct kv_fields_t {
        const void* vtable;
        std::int32_t type;
        string_fields_t key;
        array_fields_t values;
    };
    const ZKVString kv("key", "value");
    const auto fields = fields_of<kv_fields_t>(kv);
    EXPECT_EQ(fields.type, 2);
    EXPECT_EQ(fields.key.text, static_cast<const char*>(kv.inq_key()));
    EXPECT_TRUE(fields.values.n_elements == 1 && fields.values.elements == &kv.inq_values()[0]);
    const auto none = fields_of<array_fields_t>(ZStringArray(-3));
    EXPECT_TRUE(none.n_elements == -3 && none.elements == nullptr);

    struct exception_fields_t {
        const void* vtable;
        const char* id;
        std::int32_t code;
    };
    const char* const id = "ID";
    const auto exception = fields_of<exception_fields_t>(ZException(id, 5));
    EXPECT_TRUE(exception.id == id && exception.code == 5);
}

} // namespace
