#pragma once

#include "sdk/open/system/file_descriptor.h"

#include <string>

// Those whom the program tells what happens: on standard output, on standard error, and in the log, which may
// be a pipe too.
class listeners final {
public:
    // The log is there, or empty where there is none.
    explicit listeners(const std::string& log) noexcept;

    // Whether each of them can take some more lines at once. A program that waited for one in a write would
    // not hear that it is to stop.
    [[nodiscard]] bool can_be_told() const noexcept;

private:
    sdk_open::file_descriptor m_log;
};
