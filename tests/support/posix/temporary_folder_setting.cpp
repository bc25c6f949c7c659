#include "tests/support/temporary_folder_setting.h"

#include <cstdlib>

temporary_folder_setting::temporary_folder_setting(const std::filesystem::path& folder) {
    if (const char* const old = std::getenv("TMPDIR"))
        m_old = old;
    ::setenv("TMPDIR", folder.c_str(), 1);
}

temporary_folder_setting::~temporary_folder_setting() {
    if (m_old)
        ::setenv("TMPDIR", m_old->c_str(), 1);
    else
        ::unsetenv("TMPDIR");
}
