#pragma once

#include "classlib/strings/ZString.h"
#include "conversion/edsdk.h"

// A handle of the SDK, or none; released once, at the end of its life or before.
class sdk_object final {
public:
    sdk_object() noexcept = default;
    sdk_object(const sdk_object&) = delete;
    sdk_object& operator=(const sdk_object&) = delete;
    ~sdk_object() { release(); }

    // Open a file by its UTF-8 path and make an image of a stream, into an object that holds nothing. They
    // answer the SDK's code, and the object holds a handle only for eds_ok. An empty path is not handed to
    // the SDK: it fails with eds_no_path.
    [[nodiscard]] eds_error_t open_file(const ZString& path, eds_disposition_t disposition,
                                        eds_access_t access);
    [[nodiscard]] eds_error_t make_image(const sdk_object& stream);

    void release() noexcept;

    [[nodiscard]] __EdsObject* inq_handle() const noexcept { return m_handle; }

private:
    [[nodiscard]] eds_error_t adopt(eds_error_t error, __EdsObject* handle) noexcept;

    __EdsObject* m_handle = nullptr;
};

// Our own answer where the SDK could not be asked.
inline constexpr eds_error_t eds_no_path = 0xFFFFFFFF;
