#pragma once

#include <string>

// Whether this is a regular file, or can become one because nothing of that name can be seen.
[[nodiscard]] bool may_be_regular_file(const std::string& name);
