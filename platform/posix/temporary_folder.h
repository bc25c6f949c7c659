#pragma once

namespace platform {

// The user's folder for temporary files, as TMPDIR or else the C library names it; never null or empty.
[[nodiscard]] const char* temporary_folder() noexcept;

} // namespace platform
