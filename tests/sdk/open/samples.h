#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

// A raw file below samples/synthetic, by its name.
[[nodiscard]] std::filesystem::path sample(std::string_view name);

// The picture that a perfect conversion of it gives.
[[nodiscard]] std::filesystem::path truth_of(std::string_view name);

// A real camera's picture (an EOS 30D), which Debian's package rawtran-doc installs.
[[nodiscard]] std::filesystem::path real_sample();

[[nodiscard]] std::vector<std::byte> bytes_of(const std::string& text);
