#pragma once

#include <atomic>
#include <cstddef>
#include <gtest/gtest.h>
#include <new>

// Meters operator new: linking this into a binary replaces it, also for the shared libraries that the binary
// loads. What malloc hands out, and blocks with an alignment of their own, are not metered.
namespace allocation_meter {

inline std::atomic<bool> is_metering = false;
inline std::atomic<int> n_asked = 0;
inline std::atomic<std::size_t> n_bytes = 0;
inline std::atomic<int> n_held = 0;
inline std::atomic<int> failing = 0;

// From its construction until stop(), allocations are counted, and one of them fails as if memory had run
// out. One section at a time.
class section final {
public:
    // failing_allocation counts from 1; 0 lets none fail.
    explicit section(int failing_allocation) noexcept;
    section(const section&) = delete;
    section& operator=(const section&) = delete;
    ~section() { stop(); }

    void stop() noexcept { is_metering = false; }

    // Whether the failing allocation was ever asked for.
    [[nodiscard]] bool inq_failed() const noexcept { return failing > 0 && n_asked >= failing; }

    // The allocations asked for in the section so far, and the bytes that they were granted.
    [[nodiscard]] int inq_asked() const noexcept { return n_asked; }
    [[nodiscard]] std::size_t inq_bytes() const noexcept { return n_bytes; }

    // The blocks allocated in the section that have not been given back so far.
    [[nodiscard]] int inq_held() const noexcept { return n_held; }
};

// Test code that runs inside a section: its allocations are neither counted nor failed.
class exemption final {
public:
    exemption() noexcept : m_was_metering(is_metering.exchange(false)) {}
    exemption(const exemption&) = delete;
    exemption& operator=(const exemption&) = delete;
    ~exemption() { is_metering = m_was_metering; }

private:
    bool m_was_metering;
};

} // namespace allocation_meter

// Runs an action whose n-th allocation fails; true when it ended in std::bad_alloc, false when it got
// through. An action that fails may keep nothing that it allocated.
template <typename Action>
[[nodiscard]] bool runs_out_of_memory(int n, Action&& action) {
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
