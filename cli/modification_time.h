#pragma once

#include <optional>
#include <string>

// When a file was last written, in seconds since 1970 with three decimals, as records of results have it;
// nothing where the system does not tell.
[[nodiscard]] std::optional<double> inq_modification_time(const std::string& path);
