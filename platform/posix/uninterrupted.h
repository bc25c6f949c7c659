#pragma once

#include <cerrno>

namespace platform {

// Makes a system call, again for as long as signals interrupt it; answers what the last one answered, -1
// where it failed for another reason.
template <typename Call>
auto uninterrupted(Call call) noexcept {
    auto answer = call();
    while (answer == -1 && errno == EINTR)
        answer = call();
    return answer;
}

} // namespace platform
