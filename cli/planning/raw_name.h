#pragma once

#include <string>

// Whether a name ends as those of raw files do. It may be any bytes.
[[nodiscard]] bool has_raw_name(const std::string& path);
