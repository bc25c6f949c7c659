#include "cli/argument_checks.h"

#include "cli/planning/raw_name.h"
#include "cli/regular_file.h"
#include "platform/characters.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>

namespace {

std::string in_lower_case(std::string text) {
    std::ranges::transform(text, text.begin(), [](char c) { return platform::to_lower(c); });
    return text;
}

template <typename Number>
std::optional<Number> number_in(std::string_view text) noexcept {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

} // namespace

namespace argument_checks {

std::string not_empty(const std::string& name) {
    return name.empty() ? "the name is empty" : "";
}

std::string no_raw_name(const std::string& name) {
    return has_raw_name(name) ? "a raw file is never written to: " + name : "";
}

std::string no_other_file(const std::string& name) {
    const std::string lower = in_lower_case(name);
    std::error_code unknown;
    const auto size = std::filesystem::file_size(name, unknown);
    return lower.ends_with(".tif") || lower.ends_with(".tiff") || unknown || size == 0
               ? ""
               : "it exists, and the name does not end in .tif or .tiff: " + name;
}

std::string page_name(const std::string& name) {
    return name.ends_with(".html") || name.ends_with(".htm") ? "" : "the name does not end in .html: " + name;
}

std::string regular_file(const std::string& name) {
    return may_be_regular_file(name) ? "" : "not a regular file: " + name;
}

std::string duration(const std::string& seconds) {
    const auto number = number_in<double>(seconds);
    return number && *number > 0 && std::isfinite(*number) ? ""
                                                           : "not a number of seconds above 0: " + seconds;
}

std::string size(const std::string& bytes) {
    const auto number = number_in<std::int64_t>(bytes);
    return number && *number > 0 ? "" : "not a size above 0";
}

} // namespace argument_checks
