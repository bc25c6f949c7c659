#pragma once

namespace platform {

// Puts the error of the system call that just failed into errno, as its nearest C value.
void keep_system_error() noexcept;

} // namespace platform
