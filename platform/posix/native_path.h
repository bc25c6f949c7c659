#pragma once

#include "platform/utf16.h"

#include <array>
#include <climits>
#include <string>

namespace platform {

// A path in the form that POSIX calls take: UTF-8 with "/" between the components. Allocates nothing. A path
// that is too long for any call becomes a text that every call refuses for its length.
class native_path final {
public:
    explicit native_path(const utf16_t* path) noexcept;

    [[nodiscard]] const char* c_str() const noexcept { return m_text.data(); }

private:
    std::array<char, PATH_MAX + 1> m_text;
};

// A POSIX path in the form that the library keeps: UTF-16 with backslashes between the components.
[[nodiscard]] std::basic_string<utf16_t> library_path(const char* native);

} // namespace platform
