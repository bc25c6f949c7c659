#pragma once

#include "cli/options.h"

#include <string>
#include <vector>

// Answers a line for each file that is named as two of the list, the log, the report and the TIFFs.
[[nodiscard]] std::vector<std::string> find_double_roles(const options_t& options,
                                                         const std::vector<job_t>& jobs);
