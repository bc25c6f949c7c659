#include "platform/windows/system_error.h"

#include <cerrno>
#include <system_error>
#include <windows.h>

namespace platform {

void keep_system_error() noexcept {
    const auto cause = static_cast<int>(::GetLastError());
    const std::error_condition condition = std::system_category().default_error_condition(cause);
    errno = condition.category() == std::generic_category() ? condition.value() : EIO;
}

} // namespace platform
