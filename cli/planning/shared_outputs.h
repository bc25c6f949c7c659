#pragma once

#include "cli/job.h"

#include <string>
#include <vector>

// Removes the second of two jobs that are the same, however their names are spelled. Answers a line for each
// pair of inputs that would write one output.
[[nodiscard]] std::vector<std::string> remove_doubles(std::vector<job_t>& jobs);
