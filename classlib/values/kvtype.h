#pragma once

#include <cstdint>

// The value types of key/value entries.
enum kvtype_t : std::int32_t {
    kvtype_integer = 0,
    kvtype_float = 1,
    kvtype_string = 2,
    kvtype_binary = 3,
    kvtype_kvd = 4,
    kvtype_object = 5,
    kvtype_none = 6, // of an entry made from a key alone
};
