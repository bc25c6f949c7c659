#pragma once

#include "cli/options.h"

// Does what the command line asks for, and answers the exit code.
[[nodiscard]] int run_program(const options_t& options);
