#pragma once

#include "conversion/edsdk.h"

#include "tests/support/scratch_folder.h"

#include <filesystem>
#include <string>
#include <string_view>

// A raw file below samples/synthetic, by its name.
[[nodiscard]] std::filesystem::path sample(std::string_view name);

// A copy of one in a folder that anyone may enter, for users who may not enter the checkout.
[[nodiscard]] std::filesystem::path sample_for_anyone(std::string_view name, const scratch_folder& folder);

// A real camera's picture (an EOS 30D): the file that RAW_TO_TIFF_SAMPLE names, or else where Debian's
// package rawtran-doc installs it.
[[nodiscard]] std::filesystem::path real_sample();

// How a conversion through the six functions ended.
struct conversion_run {
    eds_error_t code;
    std::string reason;
};

// Calls the six functions in the driver's order and releases every handle.
[[nodiscard]] conversion_run convert(const std::filesystem::path& raw, const std::filesystem::path& tiff);
