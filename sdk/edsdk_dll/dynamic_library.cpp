#include "sdk/edsdk_dll/dynamic_library.h"

#include "sdk/edsdk_dll/failure.h"

#include <windows.h>

namespace edsdk_dll {
namespace {

// While it lives, no library that cannot be loaded opens a message box in this thread.
class without_message_boxes final {
public:
    without_message_boxes() noexcept {
        ::SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &m_old_mode);
    }
    without_message_boxes(const without_message_boxes&) = delete;
    without_message_boxes& operator=(const without_message_boxes&) = delete;
    ~without_message_boxes() { ::SetThreadErrorMode(m_old_mode, nullptr); }

private:
    DWORD m_old_mode = 0;
};

} // namespace

dynamic_library::dynamic_library(const std::basic_string<utf16_t>& path) {
    const without_message_boxes quiet;
    constexpr DWORD beside_it_first = LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS;
    m_module.reset(::LoadLibraryExW(path.c_str(), nullptr, beside_it_first));
    if (m_module == nullptr)
        throw failure("EDSDK.dll cannot be loaded: Windows error " + std::to_string(::GetLastError()));
}

dynamic_library::function_t* dynamic_library::find(const char* name) const noexcept {
    return reinterpret_cast<function_t*>(::GetProcAddress(static_cast<HMODULE>(m_module.get()), name));
}

void dynamic_library::unloader::operator()(void* module) const noexcept {
    ::FreeLibrary(static_cast<HMODULE>(module));
}

} // namespace edsdk_dll
