#pragma once

// What concerns the whole process: for programs, not for the library, which leaves its host's process as it
// is.
namespace platform {

// A write that would make a file larger than the process's limit fails, like any other, instead of ending the
// process.
void let_writes_fail_at_size_limit() noexcept;

} // namespace platform
