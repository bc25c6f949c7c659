#pragma once

#include "sdk/open/decoding/prefix_code.h"

namespace sdk_open {

// The codes of a .crw's blocks. A symbol stands for a run of zeros, in its high half-byte, and the magnitude
// of the difference after them.
struct crw_codes {
    prefix_code first;  // for the first difference of a block
    prefix_code others; // for the rest of it
};

// There are three pairs, and a .crw names one; what it calls 3 or more is the last of them.
[[nodiscard]] crw_codes make_crw_codes(unsigned table);

} // namespace sdk_open
