#pragma once

#include "conversion/edsdk.h"

#include <filesystem>
#include <string>

// A raw file below samples/synthetic, by its name.
[[nodiscard]] std::filesystem::path sample(const std::string& name);

// A real camera's picture (an EOS 30D): the file that RAW_TO_TIFF_SAMPLE names, or else where Debian's
// package rawtran-doc installs it.
[[nodiscard]] std::filesystem::path real_sample();

// Opens a file by its path with backslashes, as the driver does.
[[nodiscard]] eds_error_t open_stream(std::string path, eds_disposition_t disposition, __EdsObject** stream);

// How a conversion through the six functions, in the driver's order, ended.
struct conversion_run {
    eds_error_t code;
    std::string reason;
};
[[nodiscard]] conversion_run convert(const std::filesystem::path& raw, const std::filesystem::path& tiff);
