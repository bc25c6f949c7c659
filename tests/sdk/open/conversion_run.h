#pragma once

#include "conversion/edsdk.h"

#include <algorithm>
#include <filesystem>
#include <string>

// Opens a file by its path with backslashes, as the driver does.
inline eds_error_t open_stream(std::string path, eds_disposition_t disposition, __EdsObject** stream) {
    std::ranges::replace(path, '/', '\\');
    return EdsCreateFileStream(path.c_str(), disposition, eds_access_t::read_write, stream);
}

// Converts through the six functions; answers why that failed, and nothing where it did not.
inline std::string convert(const std::filesystem::path& raw, const std::filesystem::path& tiff) {
    __EdsObject* input = nullptr;
    __EdsObject* image = nullptr;
    __EdsObject* output = nullptr;
    eds_error_t code = EdsInitializeSDK();
    if (code == eds_ok)
        code = open_stream(raw, eds_disposition_t::open_existing, &input);
    if (code == eds_ok)
        code = EdsCreateImageRef(input, &image);
    if (code == eds_ok)
        code = open_stream(tiff, eds_disposition_t::create_always, &output);
    if (code == eds_ok)
        code = EdsSaveImage(image, eds_target_t::tiff_16_bit, {}, output);
    EdsTerminateSDK(); // releases the handles
    return std::string(code == eds_ok ? "" : inq_sdk_failure_reason());
}
