#include "classlib/strings/ZString.h"

#include <cstddef>
#include <span>

namespace {

std::span<const char> as_chars(const void* data, std::size_t n) noexcept {
    return {static_cast<const char*>(data), n};
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

void ZString::set_bytes(const void* data, unsigned int n) {
    m_text = text_t(as_chars(data, n));
}

bool ZString::write_bytes(const void* data, int n) {
    if (n > 0)
        m_text.append(as_chars(data, static_cast<std::size_t>(n)));
    return true;
}
