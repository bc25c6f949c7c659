#pragma once

#include "platform/stdcall.h"

#include <cstdint>
#include <string_view>

// The six functions of the camera maker's image SDK, as the conversion calls them. Whoever is linked in
// answers them: the open implementation in sdk/open, the camera maker's own EDSDK.dll through
// sdk/edsdk_dll, or the scripted double of the tests.
//
// Every function but EdsRelease answers an error code; a handle is written only on success. The functions
// keep process-wide state and must not be called from two threads at once.

// A stream or an image of the SDK: obtained from it, given back with EdsRelease, opaque to the caller.
struct __EdsObject; // NOLINT(bugprone-reserved-identifier): the SDK's own name, part of its interface

// 0 for success; every other value is one of the SDK's own codes.
using eds_error_t = std::uint32_t;

inline constexpr eds_error_t eds_ok = 0;
inline constexpr eds_error_t eds_file_not_found = 34;

enum class eds_disposition_t : std::uint32_t {
    create_always = 1, // a new file, replacing an existing one
    open_existing = 2,
};

enum class eds_access_t : std::uint32_t {
    write = 1,
    read_write = 2,
};

enum class eds_target_t : std::uint32_t {
    tiff_16_bit = 8, // a TIFF with 16 bits for each channel
};

// How a picture is saved; all fields zero for the SDK's defaults. Passed by value, so its size is part of
// the interface: the colour profile is a handle and as wide as a pointer.
struct tagEdsSaveImageSetting {
    std::uint32_t jpeg_quality;
    __EdsObject* profile;
    std::uint32_t reserved;
};
static_assert(sizeof(tagEdsSaveImageSetting) == 3 * sizeof(void*));

extern "C" {

// Comes before every other call of a conversion.
stdcall_function_t<eds_error_t> EdsInitializeSDK;

// Ends a conversion, even one whose EdsInitializeSDK failed. All handles have been released by then.
stdcall_function_t<eds_error_t> EdsTerminateSDK;

// Opens the file at a zero-terminated UTF-8 path whose separators are backslashes; answers
// eds_file_not_found where there is no such file. The caller owns the stream.
stdcall_function_t<eds_error_t, const char*, eds_disposition_t, eds_access_t, __EdsObject**>
    EdsCreateFileStream;

// Reads the raw picture in an input stream. The caller owns the image, which does not need the stream any
// more.
stdcall_function_t<eds_error_t, __EdsObject*, __EdsObject**> EdsCreateImageRef;

// Develops an image and writes it to an output stream.
stdcall_function_t<eds_error_t, __EdsObject*, eds_target_t, tagEdsSaveImageSetting, __EdsObject*>
    EdsSaveImage;

// Gives a handle back; the result is of no use.
stdcall_function_t<eds_error_t, __EdsObject*> EdsRelease;
}

// Why the conversion failed: the reason of the first function that failed since EdsInitializeSDK, as one
// line of UTF-8 text without a line end, for example "the pixel data end early". It names no input file, but
// it names the output file where that is to blame. Empty when nothing failed. Stays valid until the next
// EdsInitializeSDK, so even after EdsTerminateSDK. Not one of the SDK's functions: whoever answers those
// answers this one too.
[[nodiscard]] std::string_view inq_sdk_failure_reason() noexcept;

// What that failure is to be blamed on, so that a caller can tell a bad picture from a failure that may pass.
enum class sdk_blame_t {
    picture, // the input; also when nothing failed
    system,  // rights, a read or write error, a missing folder, a missing library
    full_disk,
    memory,
    appeared_output, // someone else's file of its name, there or changed since the conversion began
};
[[nodiscard]] sdk_blame_t inq_sdk_failure_blame() noexcept;
