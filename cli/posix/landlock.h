#pragma once

#include <set>
#include <string>

// Landlock: what the kernel lets a process do with files, beyond their permissions, and with other processes.
namespace landlock {

// From here on, this process can open files for reading below the paths in `read` and `written` only, make,
// write, rename and remove files and folders below those in `written` only, and start no program. A path that
// cannot be reached is left out. Nor can it trace other processes or, where the kernel is new enough, send
// them signals. False, and nothing has changed, where the kernel does not do it.
[[nodiscard]] bool restrict_process(const std::set<std::string>& read, const std::set<std::string>& written);

} // namespace landlock
