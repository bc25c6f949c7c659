#include "platform/posix/native_path.h"

#include "platform/code_page.h"
#include "platform/posix/converted_text.h"

#include <algorithm>

namespace platform {

native_path::native_path(const utf16_t* path) noexcept {
    if (utf16_to_utf8(path, m_text) == 0) {
        m_text.fill('x');
        m_text.back() = '\0';
    }
    std::replace(m_text.data(), std::find(m_text.data(), &m_text.back(), '\0'), '\\', '/');
}

std::basic_string<utf16_t> library_path(const char* native) {
    auto path = utf16_text(native);
    std::replace(path.begin(), path.end(), utf16_t('/'), utf16_t('\\'));
    return path;
}

} // namespace platform
