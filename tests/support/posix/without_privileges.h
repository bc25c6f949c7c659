#pragma once

#include <unistd.h>

// While it lives, a process of the superuser has the rights of nobody, so that permissions mean something.
// Other processes have no such rights to lose.
class without_privileges final {
public:
    without_privileges() noexcept { become(::getuid() == 0 ? nobody : ::getuid()); }
    without_privileges& operator=(without_privileges&&) = delete;
    ~without_privileges() { become(::getuid()); }

private:
    static void become(uid_t user) noexcept { static_cast<void>(::seteuid(user)); }
    static constexpr uid_t nobody = 65534;
};
