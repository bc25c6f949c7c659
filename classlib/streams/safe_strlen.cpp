#include "classlib/streams/safe_strlen.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>

int safe_strlen(const char* text) noexcept {
    constexpr std::size_t max_length = std::numeric_limits<int>::max();
    return text != nullptr ? static_cast<int>(std::min(std::strlen(text), max_length)) : 0;
}
