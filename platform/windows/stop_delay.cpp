#include "platform/stop_delay.h"

namespace platform {

// Nothing is put off: Ctrl-C ends the program at any moment.
stop_delay::stop_delay() noexcept = default;
stop_delay::~stop_delay() = default;

} // namespace platform
