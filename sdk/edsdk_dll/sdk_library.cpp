#include "sdk/edsdk_dll/sdk_library.h"

#include "platform/files.h"
#include "platform/stdcall.h"
#include "sdk/edsdk_dll/failure.h"

#include <cstddef>
#include <string>
#include <windows.h>

namespace edsdk_dll {
namespace {

using path_t = std::basic_string<utf16_t>;

// The module that holds this code; it is loaded, so its handle needs no giving back.
HMODULE inq_own_module() noexcept {
    static const char inside = 0;
    constexpr DWORD by_address =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    HMODULE module = nullptr;
    ::GetModuleHandleExW(by_address, reinterpret_cast<const wchar_t*>(&inside), &module);
    return module;
}

// The folder that a module was loaded from, with its closing backslash; null is the application.
path_t inq_folder_of(HMODULE module) {
    path_t path(MAX_PATH, utf16_t(0));
    std::size_t length = 0;
    while ((length = ::GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()))) ==
           path.size())
        path.resize(2 * path.size()); // it was cut off
    path.resize(length);
    path.resize(path.rfind(utf16_t('\\')) + 1);
    return path;
}

path_t find_library() {
    for (const HMODULE module : {inq_own_module(), HMODULE{nullptr}}) {
        const path_t folder = inq_folder_of(module);
        path_t path = folder + UTF16("EDSDK.dll");
        if (!folder.empty() && platform::inq_entry_kind(path.c_str()) == platform::entry_kind_t::file)
            return path;
    }
    throw failure("EDSDK.dll is in neither the library's folder nor the application's");
}

// How many bytes of arguments a function takes off the stack of a 32-bit program.
template <typename... Arguments>
constexpr std::size_t argument_bytes(stdcall_function_t<eds_error_t, Arguments...>*) noexcept {
    constexpr std::size_t word = 4;
    // NOLINTNEXTLINE(bugprone-sizeof-expression): of pointers, the pointer's own size is meant
    return (std::size_t{0} + ... + ((sizeof(Arguments) + word - 1) / word * word));
}

// A 32-bit library exports a function under its plain name or, as compilers decorate stdcall functions, as
// EdsRelease@4 or _EdsRelease@4.
template <typename Function>
void find_function(const dynamic_library& library, const std::string& name, Function*& function) {
    const std::string decorated = name + '@' + std::to_string(argument_bytes(function));
    for (const std::string& spelling : {name, decorated, '_' + decorated}) {
        function = reinterpret_cast<Function*>(library.find(spelling.c_str()));
        if (function != nullptr)
            return;
    }
    throw failure("EDSDK.dll has no function " + name);
}

} // namespace

sdk_library::sdk_library() : m_library(find_library()) {
    find_function(m_library, "EdsInitializeSDK", initialize_sdk);
    find_function(m_library, "EdsTerminateSDK", terminate_sdk);
    find_function(m_library, "EdsCreateFileStream", create_file_stream);
    find_function(m_library, "EdsCreateImageRef", create_image_ref);
    find_function(m_library, "EdsSaveImage", save_image);
    find_function(m_library, "EdsRelease", release);
}

} // namespace edsdk_dll
