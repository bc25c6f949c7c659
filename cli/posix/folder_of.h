#pragma once

#include <string>

// The folder that a file lies in; "." for the current one.
[[nodiscard]] std::string folder_of(const std::string& file);
