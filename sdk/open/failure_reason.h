#pragma once

#include "conversion/edsdk.h"

#include <string_view>

namespace sdk_open {

// How firmly a reason stands once it is kept.
enum class reason_t {
    final,       // stays
    provisional, // gives way to a later reason: the caller may still get around this failure
};

// The one line that explains a failed conversion. Nothing here fails or allocates; a reason that is too
// long is cut at a character's end, and a control character in it (a file name may hold a line end) becomes
// a question mark.
void forget_failure_reason() noexcept;
void keep_failure_reason(std::string_view reason, reason_t kind, sdk_blame_t blame) noexcept;

} // namespace sdk_open
