#pragma once

#include "cli/options.h"

#include <optional>

// Reads the command line into options. Answers nothing when there is something to do, else the exit code:
// --help and --version are answered here, and wrong usage is reported.
[[nodiscard]] std::optional<int> read_command_line(int argc, char** argv, options_t& options);
