#pragma once

namespace platform {

// Gives an entry another name in its file system; fails with EEXIST where there is anything of that name, and
// leaves the entry as it was. Answers 0, or -1 with the cause in errno. As safe as the file system allows.
[[nodiscard]] int rename_to_unused(const char* from, const char* to) noexcept;

} // namespace platform
