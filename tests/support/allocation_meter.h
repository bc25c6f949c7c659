#pragma once

#include <cstddef>

// Meters operator new: linking this into a binary replaces all its forms, also for the shared libraries that
// the binary loads. What malloc hands out is not metered.
namespace allocation_meter {

// From its construction until stop(), allocations are counted, and one of them fails as if memory had run
// out. One section at a time.
class section final {
public:
    // failing_allocation counts from 1; 0 lets none fail.
    explicit section(int failing_allocation) noexcept;
    section(const section&) = delete;
    section& operator=(const section&) = delete;
    ~section() { stop(); }

    void stop() noexcept;

    // Whether the failing allocation was ever asked for.
    [[nodiscard]] bool inq_failed() const noexcept;

    // The allocations asked for in the section so far, and the bytes that they were granted.
    [[nodiscard]] int inq_asked() const noexcept;
    [[nodiscard]] std::size_t inq_bytes() const noexcept;

    // The blocks allocated in the section that have not been given back so far.
    [[nodiscard]] int inq_held() const noexcept;
};

// Test code that runs inside a section: its allocations are neither counted nor failed.
class exemption final {
public:
    exemption() noexcept;
    exemption(const exemption&) = delete;
    exemption& operator=(const exemption&) = delete;
    ~exemption();

private:
    bool m_was_metering;
};

} // namespace allocation_meter
