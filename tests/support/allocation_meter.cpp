#include "tests/support/allocation_meter.h"

#include <cstdlib>

namespace {

// Stands right before each block, and is as large as the block's alignment asks for.
struct alignas(__STDCPP_DEFAULT_NEW_ALIGNMENT__) header_t {
    bool is_metered;
};

void* take(std::size_t size) noexcept {
    const bool is_metered = allocation_meter::is_metering;
    const bool is_failing = is_metered && ++allocation_meter::n_asked == allocation_meter::failing;
    void* const memory = is_failing ? nullptr : std::malloc(sizeof(header_t) + size);
    if (memory == nullptr)
        return nullptr;
    allocation_meter::n_held += is_metered ? 1 : 0;
    return ::new (memory) header_t{is_metered} + 1;
}

} // namespace

allocation_meter::section::section(int n) noexcept {
    n_asked = n_held = 0;
    failing = n;
    is_metering = true;
}

// All forms in use are replaced: a sanitizer's own would not end in the first ones.
void* operator new(std::size_t n) {
    if (void* const block = take(n))
        return block;
    throw std::bad_alloc();
}
void operator delete(void* p) noexcept {
    if (p == nullptr)
        return;
    header_t* const header = static_cast<header_t*>(p) - 1;
    allocation_meter::n_held -= header->is_metered ? 1 : 0;
    std::free(header);
}
void* operator new[](std::size_t n) {
    return operator new(n);
}
void* operator new[](std::size_t n, const std::nothrow_t&) noexcept {
    return take(n);
}
void operator delete[](void* p) noexcept {
    operator delete(p);
}
void operator delete(void* p, std::size_t) noexcept {
    operator delete(p);
}
void operator delete[](void* p, std::size_t) noexcept {
    operator delete(p);
}
