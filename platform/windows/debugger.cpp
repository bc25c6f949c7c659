#include "platform/debugger.h"

#include <intrin.h>

namespace platform {

void break_into_debugger() noexcept {
    __debugbreak();
}

} // namespace platform
