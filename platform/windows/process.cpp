#include "platform/process.h"

namespace platform {

// Windows ends no process for a write.
void let_writes_fail() noexcept {}

// Windows gives a handle no number that could be mistaken for a stream.
void open_standard_streams() noexcept {}

} // namespace platform
