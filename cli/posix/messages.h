#pragma once

#include <optional>
#include <string>

// Whole messages over a socket between the program and a worker.

// False where the other end is gone.
[[nodiscard]] bool send_message(int socket, const std::string& text) noexcept;

// Waits for a message; nothing where the other end is gone.
[[nodiscard]] std::optional<std::string> receive_message(int socket);
