#pragma once

#include <cstddef>

namespace sdk_open {

// How many threads LibRaw works with where the calling thread calls it.
[[nodiscard]] std::size_t inq_thread_count() noexcept;

// Leaves the calling thread, which should be one of our own, to work alone where the system would not let
// LibRaw have its other threads: a thread that OpenMP cannot start ends the whole process. Throws
// std::bad_alloc only.
void limit_threads_to_startable();

} // namespace sdk_open
