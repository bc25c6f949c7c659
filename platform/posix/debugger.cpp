#include "platform/debugger.h"

#include <csignal>

namespace platform {

void break_into_debugger() noexcept {
    static_cast<void>(std::raise(SIGTRAP));
}

} // namespace platform
