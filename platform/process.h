#pragma once

// What concerns the whole process: for programs, not for the library, which leaves its host's process as it
// is.
namespace platform {

// A write that would make a file larger than the process's limit, or that nobody reads any more, fails, like
// any other, instead of ending the process.
void let_writes_fail() noexcept;

// How a child process ended can be learned, also where this one was started to ignore such news: then the
// system forgets it.
void let_children_be_awaited() noexcept;

// Where the process was started with a standard stream closed, whatever it opens next would take that place.
void open_standard_streams() noexcept;

} // namespace platform
