#pragma once

#include <string>
#include <vector>

// How a program ended, and what it wrote on standard output and standard error.
struct program_run_t {
    int exit_code; // negative when a signal ended it
    std::string output;
    std::string errors;
};

// Runs a program, found as a shell finds it, with its arguments behind it. A program that cannot be started
// has the exit code 127.
[[nodiscard]] program_run_t run_program(std::vector<std::string> command);
