#include "sdk/edsdk_dll/failure_reason.h"

#include <array>
#include <cinttypes>
#include <cstdio>

namespace edsdk_dll {
namespace {

// Room for the longest line that is written here.
std::array<char, 128> the_reason{};
bool is_final = false;
sdk_blame_t the_blame = sdk_blame_t::picture;

} // namespace

void forget_failure_reason() noexcept {
    the_reason[0] = '\0';
    is_final = false;
    the_blame = sdk_blame_t::picture;
}

void keep_failure_reason(const char* reason) noexcept {
    if (!is_final) {
        std::snprintf(the_reason.data(), the_reason.size(), "%s", reason);
        the_blame = sdk_blame_t::system;
    }
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

// The SDK's own codes do not tell a full disk from a bad picture.
sdk_blame_t inq_sdk_failure_blame() noexcept {
    return edsdk_dll::the_blame;
}
