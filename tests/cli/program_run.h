#pragma once

#include <string>
#include <vector>

// How a program ended, and what it wrote on standard output and standard error.
struct program_run_t {
    int exit_code; // negative when a signal ended it
    std::string output;
    std::string errors;
};

// Runs a program to its end, found as a shell finds it, with its arguments behind it. Throws
// std::system_error when it cannot be started.
[[nodiscard]] program_run_t run_program(const std::vector<std::string>& command);
