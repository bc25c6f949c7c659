#include "platform/process.h"

namespace platform {

// Windows ends no process for a write.
void let_writes_fail() noexcept {}

// Windows remembers a process for as long as anyone holds a handle of it.
void let_children_be_awaited() noexcept {}

// Windows gives a handle no number that could be mistaken for a stream.
void open_standard_streams() noexcept {}

} // namespace platform
