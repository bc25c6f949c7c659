#include "conversion/sdk_object.h"

#include <utility>

eds_error_t sdk_object::open_file(const ZString& path, eds_disposition_t disposition, eds_access_t access) {
    if (path.length() == 0)
        return eds_no_path;
    __EdsObject* handle = nullptr;
    const eds_error_t error = EdsCreateFileStream(path, disposition, access, &handle);
    return adopt(error, handle);
}

eds_error_t sdk_object::make_image(const sdk_object& stream) {
    __EdsObject* handle = nullptr;
    const eds_error_t error = EdsCreateImageRef(stream.m_handle, &handle);
    return adopt(error, handle);
}

void sdk_object::release() noexcept {
    if (m_handle != nullptr)
        EdsRelease(std::exchange(m_handle, nullptr));
}

eds_error_t sdk_object::adopt(eds_error_t error, __EdsObject* handle) noexcept {
    if (error == eds_ok)
        m_handle = handle;
    return error;
}
