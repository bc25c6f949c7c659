#include "cli/posix/listeners.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

using sdk_open::file_descriptor;

// A pipe that is open twice has the same room for both. One that nobody reads any more is not waited for.
listeners::listeners(const std::string& log) noexcept
    : m_log(log.empty()
                ? file_descriptor()
                : file_descriptor(::open(log.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC))) {}

bool listeners::can_be_told() const noexcept {
    std::array<pollfd, 3> streams = {
        {{STDOUT_FILENO, POLLOUT, 0}, {STDERR_FILENO, POLLOUT, 0}, {m_log.inq(), POLLOUT, 0}}};
    if (::poll(streams.data(), streams.size(), 0) < 0)
        return false;
    return std::ranges::all_of(streams,
                               [](const pollfd& stream) { return stream.fd < 0 || stream.revents != 0; });
}
