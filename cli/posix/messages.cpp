#include "cli/posix/messages.h"

#include <cerrno>
#include <sys/socket.h>

namespace {

// Room for two paths and a reason, each character of them escaped.
constexpr std::size_t largest_message = 131'072;

template <typename Call>
auto repeated_when_interrupted(Call call) noexcept {
    auto answer = call();
    while (answer == -1 && errno == EINTR)
        answer = call();
    return answer;
}

} // namespace

bool send_message(int socket, const std::string& text) noexcept {
    return repeated_when_interrupted([&] {
               return ::send(socket, text.data(), text.size(), MSG_NOSIGNAL);
           }) == static_cast<ssize_t>(text.size());
}

std::optional<std::string> receive_message(int socket) {
    std::string text(largest_message, '\0');
    const ssize_t size =
        repeated_when_interrupted([&] { return ::recv(socket, text.data(), text.size(), 0); });
    if (size <= 0)
        return {};
    text.resize(static_cast<std::size_t>(size));
    return text;
}
