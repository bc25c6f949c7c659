#include "classlib/strings/integer_text.h"

#include "platform/characters.h"

#include <utility>

namespace {

// The value of a digit, or 16 for a unit that is a digit in no base.
template <typename Unit>
constexpr unsigned digit_value(Unit c) noexcept {
    if (c >= Unit('0') && c <= Unit('9'))
        return static_cast<unsigned>(c - Unit('0'));
    if (c >= Unit('A') && c <= Unit('F'))
        return static_cast<unsigned>(c - Unit('A')) + 10;
    if (c >= Unit('a') && c <= Unit('f'))
        return static_cast<unsigned>(c - Unit('a')) + 10;
    return 16;
}

// The base that a prefix announces, or 10; moves past the prefix.
template <typename Unit>
constexpr unsigned take_base(const Unit*& text) noexcept {
    if (text[0] != Unit('0'))
        return 10;
    const bool is_hexadecimal = text[1] == Unit('X') || text[1] == Unit('x');
    const bool is_binary = text[1] == Unit('B') || text[1] == Unit('b');
    if (!is_hexadecimal && !is_binary)
        return 10;
    text += 2;
    return is_hexadecimal ? 16 : 2;
}

} // namespace

template <typename Unit>
std::optional<text_integer_t> read_integer(const Unit* text) noexcept {
    if (text == nullptr)
        return {};
    while (platform::is_space(*text))
        ++text;
    const bool is_negative = *text == Unit('-');
    if (is_negative)
        ++text;
    const unsigned base = take_base(text);
    const Unit* const digits = text;
    std::uint64_t value = 0;
    for (; digit_value(*text) < base; ++text)
        value = value * base + digit_value(*text);
    if (text == digits)
        return {};
    return text_integer_t{static_cast<std::int64_t>(is_negative ? 0 - value : value), static_cast<int>(base)};
}

template <typename Unit, typename Integer>
bool store_integer(const Unit* text, Integer& value, int* base) noexcept {
    const auto read = read_integer(text);
    if (!read)
        return false;
    if (base != nullptr)
        *base = read->base;
    if (!std::in_range<Integer>(read->value))
        return false;
    value = static_cast<Integer>(read->value);
    return true;
}

template std::optional<text_integer_t> read_integer(const char* text) noexcept;
template std::optional<text_integer_t> read_integer(const utf16_t* text) noexcept;

template bool store_integer(const char* text, std::int64_t& value, int* base) noexcept;
template bool store_integer(const char* text, int& value, int* base) noexcept;
template bool store_integer(const char* text, unsigned int& value, int* base) noexcept;
template bool store_integer(const utf16_t* text, std::int64_t& value, int* base) noexcept;
template bool store_integer(const utf16_t* text, int& value, int* base) noexcept;
template bool store_integer(const utf16_t* text, unsigned int& value, int* base) noexcept;
