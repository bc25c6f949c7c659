#pragma once

#include "platform/utf16.h"

#include <memory>
#include <string>

namespace edsdk_dll {

// A library that is loaded at run time, and given back at the end of its life.
class dynamic_library final {
public:
    using function_t = void();

    // Loads a library by its full path. The libraries that it needs are looked for in its own folder, the
    // application's and the system's. Throws failure.
    explicit dynamic_library(const std::basic_string<utf16_t>& path);

    // What is exported under a name; null when nothing is. The caller knows its type.
    [[nodiscard]] function_t* find(const char* name) const noexcept;

private:
    struct unloader {
        void operator()(void* module) const noexcept;
    };

    std::unique_ptr<void, unloader> m_module;
};

} // namespace edsdk_dll
