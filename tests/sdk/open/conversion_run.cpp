#include "tests/sdk/open/conversion_run.h"

#include <algorithm>
#include <cstdlib>

std::filesystem::path sample(const std::string& name) {
    return std::filesystem::path(SAMPLE_FOLDER) / name;
}

std::filesystem::path real_sample() {
    const char* const given = std::getenv("RAW_TO_TIFF_SAMPLE");
    return given != nullptr ? given : "/usr/share/doc/rawtran/IMG_5952.CR2";
}

eds_error_t open_stream(std::string path, eds_disposition_t disposition, __EdsObject** stream) {
    std::ranges::replace(path, '/', '\\');
    return EdsCreateFileStream(path.c_str(), disposition, eds_access_t::read_write, stream);
}

conversion_run convert(const std::filesystem::path& raw, const std::filesystem::path& tiff) {
    __EdsObject* input = nullptr;
    __EdsObject* image = nullptr;
    __EdsObject* output = nullptr;
    eds_error_t code = EdsInitializeSDK();
    if (code == eds_ok)
        code = open_stream(raw, eds_disposition_t::open_existing, &input);
    if (code == eds_ok)
        code = EdsCreateImageRef(input, &image);
    EdsRelease(input);
    if (code == eds_ok)
        code = open_stream(tiff, eds_disposition_t::create_always, &output);
    if (code == eds_ok)
        code = EdsSaveImage(image, eds_target_t::tiff_16_bit, {}, output);
    EdsTerminateSDK(); // releases what is left
    return {code, std::string(inq_sdk_failure_reason())};
}
