#include "platform/stop_delay.h"

#include <atomic>
#include <windows.h>

namespace platform {
namespace {

std::atomic<bool> has_been_asked{false};

BOOL WINAPI note_request(DWORD /*event*/) noexcept {
    has_been_asked = true;
    return TRUE;
}

} // namespace

stop_delay::stop_delay() noexcept {
    has_been_asked = false;
    ::SetConsoleCtrlHandler(note_request, TRUE);
}

stop_delay::~stop_delay() {
    ::SetConsoleCtrlHandler(note_request, FALSE);
    if (has_been_asked)
        ::GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0);
}

} // namespace platform
