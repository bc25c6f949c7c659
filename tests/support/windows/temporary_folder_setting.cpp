#include "tests/support/temporary_folder_setting.h"

#include <cstdlib>
#include <windows.h>

// The system looks at TMP first.

temporary_folder_setting::temporary_folder_setting(const std::filesystem::path& folder) {
    wchar_t old[MAX_PATH] = {};
    if (::GetEnvironmentVariableW(L"TMP", old, MAX_PATH) != 0)
        m_old = old;
    ::SetEnvironmentVariableW(L"TMP", folder.c_str());
}

temporary_folder_setting::~temporary_folder_setting() {
    ::SetEnvironmentVariableW(L"TMP", m_old ? m_old->c_str() : nullptr);
}
