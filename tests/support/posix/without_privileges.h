#pragma once

#include <unistd.h>

// While it lives, a process of the superuser has the rights of nobody, so that permissions mean something.
// Other processes have no such rights to lose.
class without_privileges final {
public:
    without_privileges() noexcept : m_is_superuser(::geteuid() == 0 && ::seteuid(nobody) == 0) {}
    without_privileges(const without_privileges&) = delete;
    without_privileges& operator=(const without_privileges&) = delete;
    ~without_privileges() {
        if (m_is_superuser)
            static_cast<void>(::seteuid(0));
    }

private:
    static constexpr uid_t nobody = 65534;

    bool m_is_superuser;
};
