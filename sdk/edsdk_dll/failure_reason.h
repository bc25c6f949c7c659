#pragma once

#include "conversion/edsdk.h"

namespace edsdk_dll {

// The one line that explains a failed conversion: the first reason that is kept stays. Nothing here fails or
// allocates; a line that is too long is cut.
void forget_failure_reason() noexcept;
void keep_failure_reason(const char* reason) noexcept;

// "EdsSaveImage failed with 0x00000061". A file that was not found gives way to a later reason: the caller
// may still get around it.
void keep_failed_call(const char* function, eds_error_t error) noexcept;

} // namespace edsdk_dll
