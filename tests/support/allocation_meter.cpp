#include "tests/support/allocation_meter.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>

namespace {

std::atomic<bool> is_metering = false;
std::atomic<int> n_asked = 0;
std::atomic<std::size_t> n_bytes = 0;
std::atomic<int> n_held = 0;
std::atomic<int> failing = 0;

// Stands right before each block.
struct header_t {
    void* memory; // what malloc answered
    bool is_metered;
};

constexpr std::size_t default_alignment = __STDCPP_DEFAULT_NEW_ALIGNMENT__;
static_assert(default_alignment >= alignof(header_t));

void* take(std::size_t size, std::size_t alignment = default_alignment) noexcept {
    const bool is_metered = is_metering;
    if (is_metered && ++n_asked == failing)
        return nullptr;
    std::size_t space = size + alignment;
    void* const memory = std::malloc(sizeof(header_t) + space);
    if (memory == nullptr)
        return nullptr;
    void* block = static_cast<header_t*>(memory) + 1;
    std::align(alignment, size, block, space);
    ::new (static_cast<header_t*>(block) - 1) header_t{memory, is_metered};
    n_held += is_metered ? 1 : 0;
    n_bytes += is_metered ? size : 0;
    return block;
}

void* take_or_throw(std::size_t size, std::size_t alignment = default_alignment) {
    if (void* const block = take(size, alignment))
        return block;
    throw std::bad_alloc();
}

void give_back(void* block) noexcept {
    if (block == nullptr)
        return;
    const header_t header = *(static_cast<header_t*>(block) - 1);
    n_held -= header.is_metered ? 1 : 0;
    std::free(header.memory);
}

std::size_t as_size(std::align_val_t alignment) noexcept {
    return static_cast<std::size_t>(alignment);
}

} // namespace

namespace allocation_meter {

section::section(int failing_allocation) noexcept {
    n_asked = 0;
    n_bytes = 0;
    n_held = 0;
    failing = failing_allocation;
    is_metering = true;
}

void section::stop() noexcept {
    is_metering = false;
}

bool section::inq_failed() const noexcept {
    return failing > 0 && n_asked >= failing;
}

int section::inq_asked() const noexcept {
    return n_asked;
}

std::size_t section::inq_bytes() const noexcept {
    return n_bytes;
}

int section::inq_held() const noexcept {
    return n_held;
}

exemption::exemption() noexcept : m_was_metering(is_metering.exchange(false)) {}

exemption::~exemption() {
    is_metering = m_was_metering;
}

} // namespace allocation_meter

void* operator new(std::size_t n) {
    return take_or_throw(n);
}
void* operator new[](std::size_t n) {
    return take_or_throw(n);
}
void* operator new(std::size_t n, std::align_val_t alignment) {
    return take_or_throw(n, as_size(alignment));
}
void* operator new[](std::size_t n, std::align_val_t alignment) {
    return take_or_throw(n, as_size(alignment));
}
void* operator new(std::size_t n, const std::nothrow_t&) noexcept {
    return take(n);
}
void* operator new[](std::size_t n, const std::nothrow_t&) noexcept {
    return take(n);
}
void* operator new(std::size_t n, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return take(n, as_size(alignment));
}
void* operator new[](std::size_t n, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return take(n, as_size(alignment));
}

void operator delete(void* p) noexcept {
    give_back(p);
}
void operator delete[](void* p) noexcept {
    give_back(p);
}
void operator delete(void* p, std::size_t) noexcept {
    give_back(p);
}
void operator delete[](void* p, std::size_t) noexcept {
    give_back(p);
}
void operator delete(void* p, std::align_val_t) noexcept {
    give_back(p);
}
void operator delete[](void* p, std::align_val_t) noexcept {
    give_back(p);
}
void operator delete(void* p, std::size_t, std::align_val_t) noexcept {
    give_back(p);
}
void operator delete[](void* p, std::size_t, std::align_val_t) noexcept {
    give_back(p);
}
void operator delete(void* p, const std::nothrow_t&) noexcept {
    give_back(p);
}
void operator delete[](void* p, const std::nothrow_t&) noexcept {
    give_back(p);
}
void operator delete(void* p, std::align_val_t, const std::nothrow_t&) noexcept {
    give_back(p);
}
void operator delete[](void* p, std::align_val_t, const std::nothrow_t&) noexcept {
    give_back(p);
}
