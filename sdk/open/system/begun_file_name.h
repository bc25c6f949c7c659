#pragma once

#include <cstddef>
#include <string_view>

namespace sdk_open {

// A file in the making stands beside its target under a name of this form: prefix, random digits, ending.
inline constexpr std::string_view begun_file_prefix = ".raw-to-tiff-";
inline constexpr std::string_view begun_file_ending = ".part";
inline constexpr std::string_view begun_file_digits = "0123456789abcdefghijklmnopqrstuv";
inline constexpr std::size_t begun_file_digit_count = 16; // 80 bits

} // namespace sdk_open
