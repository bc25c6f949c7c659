#include "tests/sdk/open/conversion_run.h"

#include <algorithm>

namespace {

eds_error_t load(const std::string& path, __EdsObject** image) {
    __EdsObject* stream = nullptr;
    eds_error_t code = EdsCreateFileStream(path.c_str(), eds_disposition_t::open_existing,
                                           eds_access_t::read_write, &stream);
    if (code == eds_ok)
        code = EdsCreateImageRef(stream, image);
    EdsRelease(stream);
    return code;
}

eds_error_t save(__EdsObject* image, const std::string& path) {
    __EdsObject* stream = nullptr;
    eds_error_t code =
        EdsCreateFileStream(path.c_str(), eds_disposition_t::create_always, eds_access_t::write, &stream);
    if (code == eds_ok)
        code = EdsSaveImage(image, eds_target_t::tiff_16_bit, {}, stream);
    EdsRelease(stream);
    return code;
}

// As the driver has it: UTF-8 with backslashes.
std::string driver_path(const std::filesystem::path& path) {
    std::string text = path.string();
    std::ranges::replace(text, '/', '\\');
    return text;
}

} // namespace

conversion_run convert(const std::filesystem::path& raw, const std::filesystem::path& tiff) {
    __EdsObject* image = nullptr;
    eds_error_t code = EdsInitializeSDK();
    if (code == eds_ok)
        code = load(driver_path(raw), &image);
    if (code == eds_ok)
        code = save(image, driver_path(tiff));
    EdsRelease(image);
    EdsTerminateSDK();
    return {code, std::string(inq_sdk_failure_reason())};
}

bool is_one_line(const std::string& reason) {
    return !reason.empty() &&
           std::ranges::none_of(reason, [](char unit) { return unit == '\n' || unit == '\r'; });
}
