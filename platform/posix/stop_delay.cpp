#include "platform/stop_delay.h"

#include <csignal>
#include <initializer_list>

namespace platform {
namespace {

void change_mask(int how) noexcept {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&signals, signal);
    ::sigprocmask(how, &signals, nullptr);
}

} // namespace

stop_delay::stop_delay() noexcept {
    change_mask(SIG_BLOCK);
}

stop_delay::~stop_delay() {
    change_mask(SIG_UNBLOCK);
}

} // namespace platform
