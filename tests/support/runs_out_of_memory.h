#pragma once

#include "tests/support/allocation_meter.h"

#include <new>

// Runs an action whose n-th allocation fails; true when it ended in std::bad_alloc, false when it got
// through.
template <typename Action>
[[nodiscard]] bool runs_out_of_memory(int n, Action&& action) {
    try {
        const allocation_meter::section section(n);
        action();
        return false;
    } catch (const std::bad_alloc&) {
        return true;
    }
}
