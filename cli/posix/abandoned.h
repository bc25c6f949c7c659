#pragma once

#include "cli/posix/descriptor.h"

#include <string>

// Opens a file or folder whose maker locked it for as long as it is in use, and is gone. Answers none where
// it is in use, or the system cannot tell. Nobody else gets it while the answer is kept open.
[[nodiscard]] descriptor take_abandoned(const std::string& path) noexcept;
