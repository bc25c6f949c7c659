#pragma once

#include <string_view>

// A file in the making stands beside its target under a name of this form: prefix, random characters, ending.
namespace platform {

inline constexpr std::string_view begun_file_prefix = ".raw-to-tiff-";
inline constexpr std::string_view begun_file_ending = ".part";

} // namespace platform
