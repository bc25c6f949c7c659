#pragma once

#include "conversion/edsdk.h"
#include "sdk/edsdk_dll/dynamic_library.h"

namespace edsdk_dll {

// The camera maker's EDSDK.dll and its six functions, for as long as this lives. It is the one in the folder
// of the library that this code is part of, or else the one in the application's folder; no other place is
// looked at.
class sdk_library final {
public:
    // Throws failure when there is none, when it cannot be loaded, and when it lacks a function.
    sdk_library();

    decltype(EdsInitializeSDK)* initialize_sdk = nullptr;
    decltype(EdsTerminateSDK)* terminate_sdk = nullptr;
    decltype(EdsCreateFileStream)* create_file_stream = nullptr;
    decltype(EdsCreateImageRef)* create_image_ref = nullptr;
    decltype(EdsSaveImage)* save_image = nullptr;
    decltype(EdsRelease)* release = nullptr;

private:
    dynamic_library m_library;
};

} // namespace edsdk_dll
