#include "classlib/strings/ZString.h"

#include "classlib/errors/checks.h"
#include "classlib/streams/ZData.h"
#include "classlib/streams/ZRStream.h"
#include "classlib/strings/integer_text.h"
#include "platform/number_text.h"

#include <cstddef>
#include <new>
#include <span>

namespace {

std::span<const char> as_chars(const void* data, std::size_t n) noexcept {
    return {static_cast<const char*>(data), n};
}

char narrowed(utf16_t unit) noexcept {
    return unit < 256 ? static_cast<char>(static_cast<unsigned char>(unit)) : '?';
}

} // namespace

ZString& ZString::operator=(const ZString& other) {
    m_text = other.m_text;
    return *this;
}

ZString& ZString::operator=(ZString&& other) noexcept {
    m_text = std::move(other.m_text);
    return *this;
}

ZString& ZString::operator=(const char* text) {
    m_text.assign(text);
    return *this;
}

void ZString::clear() noexcept {
    m_text.clear();
    reset_format();
}

void ZString::init_narrow(const utf16_t* text) {
    m_text = text_t::mapped(ZTextBuffer<utf16_t>::view_of(text), narrowed);
}

bool ZString::write_bytes(const void* data, int n) {
    if (n > 0)
        m_text.append(as_chars(data, static_cast<std::size_t>(n)));
    return true;
}

bool ZString::read_from(ZRStream& in) {
    ZData collected;
    unsigned char c = 1;
    while (c != 0 && in.read_byte(c)) {
        if (!collected.append_byte(c))
            throw std::bad_alloc();
    }
    const auto* bytes = static_cast<const void*>(collected.inq_data());
    m_text = text_t(static_cast<const char*>(bytes), collected.inq_n_bytes());
    return in.inq_error() == rstreamerr_ok;
}

ZString& ZString::operator+=(const char* text) {
    m_text.append(text);
    return *this;
}

ZString& ZString::operator+=(char c) {
    m_text.append(c);
    return *this;
}

void ZString::replace(const ZString& search, const ZString& replacement) {
    const int search_len = search.length();
    ZASSERT(search_len > 0);
    m_text.replace(search.m_text.view(), replacement.m_text.view());
}

bool ZString::to_double(double& value) const {
    return !m_text.is_null() && platform::scan_double(m_text.c_text(), value);
}

bool ZString::to_int64(std::int64_t& value, int* base) const noexcept {
    return store_integer(m_text.c_text(), value, base);
}

bool ZString::to_int(int& value, int* base) const noexcept {
    return store_integer(m_text.c_text(), value, base);
}

bool ZString::to_uint(unsigned int& value, int* base) const noexcept {
    return store_integer(m_text.c_text(), value, base);
}
