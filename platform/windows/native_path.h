#pragma once

#include "platform/utf16.h"

#include <array>
#include <cstddef>

namespace platform {

// A path in the form that Windows calls take. One that is too long for them as it stands goes in its full
// form after "\\?\", which lifts the limit of 259 units; every other goes as it is. Allocates nothing. A null
// path, and one that cannot be completed, becomes the empty path, which every call refuses.
class native_path final {
public:
    explicit native_path(const utf16_t* path) noexcept;
    native_path(const native_path&) = delete;
    native_path& operator=(const native_path&) = delete;

    [[nodiscard]] const utf16_t* c_str() const noexcept { return m_path; }

    // Whether it begins with "\\?\", be it as it came or by our doing.
    [[nodiscard]] bool is_prefixed() const noexcept;

    // Whether both are one full path, letter case included.
    [[nodiscard]] bool operator==(const native_path& other) const noexcept;

private:
    [[nodiscard]] bool complete(const utf16_t* path) noexcept;
    [[nodiscard]] const utf16_t* put_prefix() noexcept;

    // The longest path that the system takes, after room for the prefix.
    static constexpr std::size_t prefix_capacity = 8;
    static constexpr std::size_t capacity = 32768;

    [[nodiscard]] utf16_t* inq_full() noexcept { return m_text.data() + prefix_capacity; }
    [[nodiscard]] const utf16_t* inq_full() const noexcept { return m_text.data() + prefix_capacity; }

    const utf16_t* m_path;
    std::array<utf16_t, prefix_capacity + capacity> m_text; // filled as far as it is used
};

} // namespace platform
