#pragma once

namespace platform {

// While it lives, a request to stop the program (interrupt, terminate, hang up) does not end it; one that
// comes takes effect at its end. For what is short and is not to be left half done. One lives at a time.
class stop_delay final {
public:
    stop_delay() noexcept;
    stop_delay(const stop_delay&) = delete;
    stop_delay& operator=(const stop_delay&) = delete;
    ~stop_delay();
};

} // namespace platform
