#include "cli/posix/messages.h"

#include "platform/posix/uninterrupted.h"

#include <cstddef>
#include <sys/socket.h>

namespace {

// Room for two paths and a reason, each character of them escaped, and a thumbnail.
constexpr std::size_t largest_message = 131'072;

} // namespace

bool send_message(int socket, const std::string& text) noexcept {
    return platform::uninterrupted([&] { return ::send(socket, text.data(), text.size(), MSG_NOSIGNAL); }) ==
           static_cast<ssize_t>(text.size());
}

std::optional<std::string> receive_message(int socket) {
    std::string text(largest_message, '\0');
    const ssize_t size = platform::uninterrupted([&] { return ::recv(socket, text.data(), text.size(), 0); });
    if (size <= 0)
        return {};
    text.resize(static_cast<std::size_t>(size));
    return text;
}
