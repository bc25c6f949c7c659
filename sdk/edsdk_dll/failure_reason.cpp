#include "sdk/edsdk_dll/failure_reason.h"

#include <array>
#include <cinttypes>
#include <cstdio>

namespace edsdk_dll {
namespace {

// Room for the longest line that is written here.
std::array<char, 128> the_reason{};
bool is_final = false;

} // namespace

void forget_failure_reason() noexcept {
    the_reason[0] = '\0';
    is_final = false;
}

void keep_failure_reason(const char* reason) noexcept {
    if (!is_final)
        std::snprintf(the_reason.data(), the_reason.size(), "%s", reason);
    is_final = true;
}

void keep_failed_call(const char* function, eds_error_t error) noexcept {
    if (!is_final)
        std::snprintf(the_reason.data(), the_reason.size(), "%s failed with 0x%08" PRIX32, function, error);
    is_final = error != eds_file_not_found;
}

} // namespace edsdk_dll

std::string_view inq_sdk_failure_reason() noexcept {
    return edsdk_dll::the_reason.data();
}
