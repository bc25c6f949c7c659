#pragma once

#include "platform/utf16.h"

#include <cstdint>
#include <optional>

// An integer read from text, and the base in which it stood there: 2, 10 or 16.
struct text_integer_t {
    std::int64_t value;
    int base;
};

// Reads an integer from the beginning of a zero-terminated text: white space, an optional "-", an optional
// prefix 0x, 0X, 0b or 0B, and digits; what follows the digits is ignored, and values beyond 64 bits wrap.
// "-0x1F" gives -31 in base 16. Nothing for a null text and where no digit stands.
template <typename Unit>
[[nodiscard]] std::optional<text_integer_t> read_integer(const Unit* text) noexcept;

extern template std::optional<text_integer_t> read_integer(const char* text) noexcept;
extern template std::optional<text_integer_t> read_integer(const utf16_t* text) noexcept;

// Reads an integer and stores it when it fits the target. The base is stored, where base is not null, for
// every integer that was read, also when it does not fit. False, and the value unchanged, otherwise.
template <typename Unit, typename Integer>
[[nodiscard]] bool store_integer(const Unit* text, Integer& value, int* base) noexcept;

extern template bool store_integer(const char* text, std::int64_t& value, int* base) noexcept;
extern template bool store_integer(const char* text, int& value, int* base) noexcept;
extern template bool store_integer(const char* text, unsigned int& value, int* base) noexcept;
extern template bool store_integer(const utf16_t* text, std::int64_t& value, int* base) noexcept;
extern template bool store_integer(const utf16_t* text, int& value, int* base) noexcept;
extern template bool store_integer(const utf16_t* text, unsigned int& value, int* base) noexcept;
