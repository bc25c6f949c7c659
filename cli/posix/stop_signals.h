#pragma once

#include "sdk/open/system/file_descriptor.h"

#include <csignal>

// As long as it lives, the signals that ask a program to stop (interrupt, terminate, hang up) end neither
// this process nor those that it starts, but can be waited for. Signals that whoever started the program had
// it ignore stay ignored.
class stop_signals final {
public:
    // Throws std::system_error.
    stop_signals();
    stop_signals(const stop_signals&) = delete;
    stop_signals& operator=(const stop_signals&) = delete;
    ~stop_signals();

    // Becomes readable when one of them has come.
    [[nodiscard]] int inq_descriptor() const noexcept { return m_descriptor.inq(); }

private:
    sigset_t m_old{};
    sdk_open::file_descriptor m_descriptor;
};
