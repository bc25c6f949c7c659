#pragma once

#include <atomic>
#include <gtest/gtest.h>
#include <new>

// Meters operator new: linking this into a binary replaces it, also for the shared libraries that the binary
// loads. What malloc hands out, and blocks with an alignment of their own, are not metered.
namespace allocation_meter {

inline std::atomic<bool> is_metering = false;
inline std::atomic<int> n_asked = 0;
inline std::atomic<int> n_held = 0;
inline std::atomic<int> failing = 0;

// Counts allocations until stop(), and lets the n-th fail, counted from 1. One section at a time.
class section final {
public:
    explicit section(int n) noexcept;
    section& operator=(section&&) = delete;
    ~section() { stop(); }

    void stop() noexcept { is_metering = false; }

    // The allocations asked for so far, and whether the failing one was among them.
    [[nodiscard]] int inq_asked() const noexcept { return n_asked; }
    [[nodiscard]] bool inq_failed() const noexcept { return failing > 0 && n_asked >= failing; }

    // The blocks allocated in the section that have not been given back so far.
    [[nodiscard]] int inq_held() const noexcept { return n_held; }
};

// Test code that runs inside a section: its allocations are neither counted nor failed.
struct exemption final {
    ~exemption() { is_metering = was_metering; }
    const bool was_metering = is_metering.exchange(false);
};

} // namespace allocation_meter

// Runs an action whose n-th allocation fails; true when it ended in std::bad_alloc, false when it got
// through. An action that fails may keep nothing that it allocated.
[[nodiscard]] bool runs_out_of_memory(int n, const auto& action) {
    allocation_meter::section section(n);
    try {
        action();
        return false;
    } catch (const std::bad_alloc&) {
        section.stop();
        EXPECT_EQ(section.inq_held(), 0) << "after allocation " << n << " failed";
        return true;
    }
}
