#pragma once

#include "conversion/edsdk.h"

#include <filesystem>
#include <string>

// How a conversion through the six functions ended.
struct conversion_run {
    eds_error_t code;
    std::string reason;
};

// Calls the six functions in the driver's order and releases every handle.
[[nodiscard]] conversion_run convert(const std::filesystem::path& raw, const std::filesystem::path& tiff);

// Whether a reason is fit to be shown: one line, not empty.
[[nodiscard]] bool is_one_line(const std::string& reason);
