#pragma once

#include <cstdio>

namespace platform {

// Makes a file to write and read again in the user's folder for temporary files. It has no name, and so is
// gone when it is closed or the process ends. The caller closes it. Null where there can be none: the cause
// is in errno.
[[nodiscard]] std::FILE* open_unnamed_file();

} // namespace platform
