#pragma once

#include <stdexcept>

namespace edsdk_dll {

// EDSDK.dll is of no use; what() is the line that says why.
class failure final : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace edsdk_dll
