#pragma once

#include "cli/result.h"

#include <string>

// A row of the report's table. Each cell has the key that it is sorted by.
[[nodiscard]] std::string html_row(const result_t& result);
