#include "platform/characters.h"

#include <cctype>

namespace platform {
namespace {

unsigned char as_byte(char c) noexcept {
    return static_cast<unsigned char>(c);
}

} // namespace

bool is_space(char c) noexcept {
    return std::isspace(as_byte(c)) != 0;
}

bool is_alnum(char c) noexcept {
    return std::isalnum(as_byte(c)) != 0;
}

bool is_control(char c) noexcept {
    return std::iscntrl(as_byte(c)) != 0;
}

char to_upper(char c) noexcept {
    return static_cast<char>(std::toupper(as_byte(c)));
}

char to_lower(char c) noexcept {
    return static_cast<char>(std::tolower(as_byte(c)));
}

} // namespace platform
