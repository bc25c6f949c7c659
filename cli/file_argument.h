#pragma once

#include "classlib/files/ZFileLocation.h"

#include <optional>
#include <string>

// The location of a file that the command line names; nothing for a name that the library cannot hold,
// because it is not UTF-8, is empty, is longer than the system takes, or holds a backslash where the system's
// separator is another one: the library would take it for a separator.
[[nodiscard]] std::optional<ZFileLocation> locate(const std::string& argument);
