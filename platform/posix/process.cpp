#include "platform/process.h"

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace platform {

void let_writes_fail() noexcept {
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
}

void let_children_be_awaited() noexcept {
    std::signal(SIGCHLD, SIG_DFL);
}

// For reading only, so that writes to a stream that was closed still fail.
void open_standard_streams() noexcept {
    int opened = ::open("/dev/null", O_RDONLY);
    while (opened >= 0 && opened < STDERR_FILENO)
        opened = ::open("/dev/null", O_RDONLY);
    if (opened > STDERR_FILENO)
        ::close(opened);
}

} // namespace platform
