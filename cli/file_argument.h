#pragma once

#include "classlib/files/ZFileLocation.h"

#include <optional>
#include <string>

// The location of a file that the command line names; nothing for a name that the library cannot hold,
// because it is not UTF-8, holds a backslash, which the library takes for a separator, or is empty.
[[nodiscard]] std::optional<ZFileLocation> locate(const std::string& argument);
