#pragma once

// What concerns the whole process: for programs, not for the library, which leaves its host's process as it
// is.
namespace platform {

// A write that would make a file larger than the process's limit, or that nobody reads any more, fails, like
// any other, instead of ending the process.
void let_writes_fail() noexcept;

// Lets the end of a child process be learned even where this one was started with SIGCHLD ignored: the system
// would otherwise forget it.
void let_children_be_awaited() noexcept;

// Opens those of the standard streams that the process was started without: the next file that it opens would
// otherwise take their place.
void open_standard_streams() noexcept;

} // namespace platform
