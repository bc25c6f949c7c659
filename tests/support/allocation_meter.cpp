#include "tests/support/allocation_meter.h"

#include <cstdlib>

namespace allocation_meter {
namespace {

// Stands right before each block, and is as large as the block's alignment asks for.
struct alignas(__STDCPP_DEFAULT_NEW_ALIGNMENT__) header_t {
    bool is_metered;
};

void* take(std::size_t size) noexcept {
    const bool is_metered = is_metering;
    if (is_metered && ++n_asked == failing)
        return nullptr;
    void* const memory = std::malloc(sizeof(header_t) + size);
    if (memory == nullptr)
        return nullptr;
    n_held += is_metered ? 1 : 0;
    n_bytes += is_metered ? size : 0;
    return ::new (memory) header_t{is_metered} + 1;
}

void* take_or_throw(std::size_t size) {
    if (void* const block = take(size))
        return block;
    throw std::bad_alloc();
}

void give_back(void* block) noexcept {
    if (block == nullptr)
        return;
    header_t* const header = static_cast<header_t*>(block) - 1;
    n_held -= header->is_metered ? 1 : 0;
    std::free(header);
}

} // namespace

section::section(int failing_allocation) noexcept {
    n_asked = 0;
    n_bytes = 0;
    n_held = 0;
    failing = failing_allocation;
    is_metering = true;
}

} // namespace allocation_meter

// All forms are replaced: a sanitizer's own would not end in these.
void* operator new(std::size_t n) {
    return allocation_meter::take_or_throw(n);
}
void* operator new[](std::size_t n) {
    return allocation_meter::take_or_throw(n);
}
void* operator new(std::size_t n, const std::nothrow_t&) noexcept {
    return allocation_meter::take(n);
}
void* operator new[](std::size_t n, const std::nothrow_t&) noexcept {
    return allocation_meter::take(n);
}
void operator delete(void* p) noexcept {
    allocation_meter::give_back(p);
}
void operator delete[](void* p) noexcept {
    allocation_meter::give_back(p);
}
void operator delete(void* p, std::size_t) noexcept {
    allocation_meter::give_back(p);
}
void operator delete[](void* p, std::size_t) noexcept {
    allocation_meter::give_back(p);
}
void operator delete(void* p, const std::nothrow_t&) noexcept {
    allocation_meter::give_back(p);
}
void operator delete[](void* p, const std::nothrow_t&) noexcept {
    allocation_meter::give_back(p);
}
