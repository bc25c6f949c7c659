#pragma once

#include <span>
#include <string>

// The bytes 4d 61 give "TWE=".
[[nodiscard]] std::string base64_of(std::span<const unsigned char> bytes);
