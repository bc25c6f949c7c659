#include "classlib/strings/ZUString.h"

#include "classlib/errors/checks.h"
#include "classlib/strings/integer_text.h"
#include "platform/code_page.h"
#include "platform/number_text.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <limits>
#include <memory>
#include <span>

namespace {

utf16_t widened(char c) noexcept {
    return static_cast<unsigned char>(c);
}

} // namespace

ZUString::ZUString(const char* text) : m_text(text_t::mapped(ZTextBuffer<char>::view_of(text), widened)) {}

ZUString ZUString::from_utf8(const char* text) {
    const int size = platform::utf8_to_utf16(text, {});
    if (size == 0)
        return {};
    const auto n_units = static_cast<std::size_t>(size);
    const auto units = std::make_unique_for_overwrite<utf16_t[]>(n_units);
    if (platform::utf8_to_utf16(text, std::span(units.get(), n_units)) <= 0)
        return {};
    return ZUString(units.get());
}

ZUString& ZUString::operator=(const utf16_t* text) {
    m_text.assign(text);
    return *this;
}

ZUString& ZUString::operator+=(const utf16_t* text) {
    m_text.append(text);
    return *this;
}

ZUString& ZUString::operator+=(utf16_t c) {
    m_text.append(c);
    return *this;
}

ZUString& ZUString::operator<<(int value) {
    std::array<char, std::numeric_limits<int>::digits10 + 3> digits{}; // sign, all digits, terminator
    std::to_chars(digits.begin(), digits.end() - 1, value);
    return *this << digits.data();
}

void ZUString::replace(const ZUString& search, const ZUString& replacement) {
    const int search_len = search.length();
    ZASSERT(search_len > 0);
    m_text.replace(search.m_text.view(), replacement.m_text.view());
}

bool ZUString::to_double(double& value) const {
    return !m_text.is_null() && platform::scan_double(m_text.c_text(), value);
}

bool ZUString::to_int64(std::int64_t& value, int* base) const noexcept {
    return store_integer(m_text.c_text(), value, base);
}

bool ZUString::to_int(int& value, int* base) const noexcept {
    return store_integer(m_text.c_text(), value, base);
}

bool ZUString::to_uint(unsigned int& value, int* base) const noexcept {
    return store_integer(m_text.c_text(), value, base);
}
