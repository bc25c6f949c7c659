#include "cli/terminal.h"

#include <cstdlib>
#include <string_view>
#include <sys/ioctl.h>
#include <unistd.h>

namespace terminal {

unsigned inq_width() noexcept {
    constexpr unsigned usual_width = 80;
    const char* const kind = std::getenv("TERM");
    if (::isatty(STDERR_FILENO) == 0 || kind == nullptr || std::string_view(kind) == "dumb")
        return 0;
    winsize size{};
    const bool is_known = ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return is_known ? size.ws_col : usual_width;
}

bool has_standard_output() noexcept {
    return ::isatty(STDOUT_FILENO) != 0;
}

} // namespace terminal
