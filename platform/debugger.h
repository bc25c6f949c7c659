#pragma once

namespace platform {

// Executes a breakpoint. A debugger stops there; without one the system deals with the breakpoint signal.
void break_into_debugger() noexcept;

} // namespace platform
