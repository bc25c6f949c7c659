#include "sdk/open/failure_reason.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace sdk_open {
namespace {

// Room for the longest path that the system takes and some words.
constexpr std::size_t reason_capacity = 4608;

struct kept_reason {
    std::array<char, reason_capacity> text;
    std::size_t length = 0;
    reason_t kind = reason_t::provisional;
    sdk_blame_t blame = sdk_blame_t::picture;
};

kept_reason the_reason;

bool continues_character(char unit) noexcept {
    return (static_cast<unsigned char>(unit) & 0xc0U) == 0x80U;
}

std::string_view cut_to_capacity(std::string_view reason) noexcept {
    if (reason.size() <= reason_capacity)
        return reason;
    std::size_t length = reason_capacity;
    while (length > 0 && continues_character(reason[length]))
        --length;
    return reason.substr(0, length);
}

bool is_control(char unit) noexcept {
    return static_cast<unsigned char>(unit) < 0x20U || unit == '\x7f';
}

} // namespace

void forget_failure_reason() noexcept {
    the_reason.length = 0;
    the_reason.kind = reason_t::provisional;
    the_reason.blame = sdk_blame_t::picture;
}

void keep_failure_reason(std::string_view reason, reason_t kind, sdk_blame_t blame) noexcept {
    if (the_reason.length != 0 && the_reason.kind == reason_t::final)
        return;
    const std::string_view kept = cut_to_capacity(reason);
    std::replace_copy_if(kept.begin(), kept.end(), the_reason.text.begin(), is_control, '?');
    the_reason.length = kept.size();
    the_reason.kind = kind;
    the_reason.blame = blame;
}

} // namespace sdk_open

std::string_view inq_sdk_failure_reason() noexcept {
    return {sdk_open::the_reason.text.data(), sdk_open::the_reason.length};
}

sdk_blame_t inq_sdk_failure_blame() noexcept {
    return sdk_open::the_reason.blame;
}
