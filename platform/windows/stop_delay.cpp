#include "platform/stop_delay.h"

namespace platform {

// FIXME: Ctrl-C ends the program here at any moment.
stop_delay::stop_delay() noexcept = default;
stop_delay::~stop_delay() = default;

} // namespace platform
