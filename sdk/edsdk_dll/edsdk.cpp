#include "conversion/edsdk.h"

#include "sdk/edsdk_dll/failure.h"
#include "sdk/edsdk_dll/failure_reason.h"
#include "sdk/edsdk_dll/sdk_library.h"

#include <exception>
#include <optional>

namespace edsdk_dll {
namespace {

// Our own answer where the SDK could not be asked.
constexpr eds_error_t no_sdk = 0xFFFFFFFF;

std::optional<sdk_library> the_library; // from EdsInitializeSDK to EdsTerminateSDK

// Calls a function of the library whose failure matters, and keeps the reason.
template <typename Function, typename... Arguments>
eds_error_t call(const char* name, Function* sdk_library::*function, Arguments... arguments) noexcept {
    if (!the_library)
        return no_sdk;
    const eds_error_t error = ((*the_library).*function)(arguments...);
    if (error != eds_ok)
        keep_failed_call(name, error);
    return error;
}

bool load() noexcept {
    try {
        the_library.emplace();
        return true;
    } catch (const std::exception& problem) { // out of memory, if not a failure
        keep_failure_reason(problem.what());
        return false;
    }
}

} // namespace
} // namespace edsdk_dll

using namespace edsdk_dll;

eds_error_t EdsInitializeSDK() {
    forget_failure_reason();
    return load() ? call("EdsInitializeSDK", &sdk_library::initialize_sdk) : no_sdk;
}

eds_error_t EdsTerminateSDK() {
    const eds_error_t error = the_library ? the_library->terminate_sdk() : no_sdk;
    the_library.reset();
    return error;
}

eds_error_t EdsCreateFileStream(const char* path, eds_disposition_t disposition, eds_access_t access,
                                __EdsObject** stream) {
    return call("EdsCreateFileStream", &sdk_library::create_file_stream, path, disposition, access, stream);
}

eds_error_t EdsCreateImageRef(__EdsObject* stream, __EdsObject** image) {
    return call("EdsCreateImageRef", &sdk_library::create_image_ref, stream, image);
}

eds_error_t EdsSaveImage(__EdsObject* image, eds_target_t target, tagEdsSaveImageSetting settings,
                         __EdsObject* stream) {
    return call("EdsSaveImage", &sdk_library::save_image, image, target, settings, stream);
}

eds_error_t EdsRelease(__EdsObject* object) {
    return the_library ? the_library->release(object) : no_sdk;
}
