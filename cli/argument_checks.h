#pragma once

#include <string>

// Each says what is wrong with an argument of the command line; empty where nothing is.
namespace argument_checks {

[[nodiscard]] std::string not_empty(const std::string& name);

// No raw file is to be written to by mistake.
[[nodiscard]] std::string no_raw_name(const std::string& name);

// Nor is another picture to be replaced, where the shell puts two names for IMG_1.*. A new TIFF may have any
// name, and so may an empty file, such as mktemp makes.
[[nodiscard]] std::string no_other_file(const std::string& name);

// No raw file or TIFF is to be replaced by mistake.
[[nodiscard]] std::string page_name(const std::string& name);

// A log to go on with is read to its end first, which a pipe may never have.
[[nodiscard]] std::string regular_file(const std::string& name);

[[nodiscard]] std::string duration(const std::string& seconds);

// A number of bytes; the parser makes a very large one of a negative one.
[[nodiscard]] std::string size(const std::string& bytes);

} // namespace argument_checks
