#include "tests/sdk/open/conversion_run.h"

#include <algorithm>
#include <cstdlib>

std::filesystem::path sample(std::string_view name) {
    return std::filesystem::path(SAMPLE_FOLDER) / name;
}

std::filesystem::path sample_for_anyone(std::string_view name, const scratch_folder& folder) {
    namespace fs = std::filesystem;
    const fs::path copy = folder.inq_path() / name;
    fs::copy_file(sample(name), copy);
    fs::permissions(folder.inq_path(), fs::perms::all);
    fs::permissions(copy, fs::perms::all);
    return copy;
}

std::filesystem::path real_sample() {
    const char* const given = std::getenv("RAW_TO_TIFF_SAMPLE");
    return given != nullptr ? given : "/usr/share/doc/rawtran/IMG_5952.CR2";
}

conversion_run convert(const std::filesystem::path& raw, const std::filesystem::path& tiff) {
    const auto open = [](std::string path, eds_disposition_t disposition, __EdsObject** stream) {
        std::ranges::replace(path, '/', '\\'); // as the driver has it
        return EdsCreateFileStream(path.c_str(), disposition, eds_access_t::read_write, stream);
    };
    __EdsObject* input = nullptr;
    __EdsObject* image = nullptr;
    __EdsObject* output = nullptr;
    eds_error_t code = EdsInitializeSDK();
    if (code == eds_ok)
        code = open(raw, eds_disposition_t::open_existing, &input);
    if (code == eds_ok)
        code = EdsCreateImageRef(input, &image);
    EdsRelease(input);
    if (code == eds_ok)
        code = open(tiff, eds_disposition_t::create_always, &output);
    if (code == eds_ok)
        code = EdsSaveImage(image, eds_target_t::tiff_16_bit, {}, output);
    EdsRelease(output);
    EdsRelease(image);
    EdsTerminateSDK();
    return {code, std::string(inq_sdk_failure_reason())};
}
