#pragma once

// From here on, this process can only make the system calls that a conversion takes. One that starts a
// program, opens a socket or meddles with other processes ends it with SIGSYS; every other one fails as if
// the kernel did not have it, so that a newer C library makes do without. Needs PR_SET_NO_NEW_PRIVS. False,
// and nothing has changed, where the kernel does not do it.
[[nodiscard]] bool filter_system_calls() noexcept;
