#include "platform/stop_delay.h"

#include <csignal>
#include <initializer_list>

namespace platform {
namespace {

sigset_t blocked_before;

} // namespace

stop_delay::stop_delay() noexcept {
    sigset_t requests;
    sigemptyset(&requests);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&requests, signal);
    ::sigprocmask(SIG_BLOCK, &requests, &blocked_before);
}

stop_delay::~stop_delay() {
    ::sigprocmask(SIG_SETMASK, &blocked_before, nullptr);
}

} // namespace platform
