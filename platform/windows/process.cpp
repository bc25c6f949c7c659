#include "platform/process.h"

namespace platform {

// Windows sets processes no such limit.
void let_writes_fail_at_size_limit() noexcept {}

} // namespace platform
