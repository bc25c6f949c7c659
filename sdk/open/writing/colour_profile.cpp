#include "sdk/open/writing/colour_profile.h"

#include <algorithm>
#include <array>
#include <lcms2.h>
#include <lcms2_plugin.h>
#include <memory>
#include <new>

namespace sdk_open {
namespace {

struct context_closer {
    void operator()(cmsContext context) const noexcept { cmsDeleteContext(context); }
};
struct profile_closer {
    void operator()(cmsHPROFILE profile) const noexcept { cmsCloseProfile(profile); }
};
using context_handle = std::unique_ptr<_cmsContext_struct, context_closer>;
using profile_handle = std::unique_ptr<void, profile_closer>;

// Little CMS takes its locks from the heap without a look at whether there is memory for them. A profile that
// one thread makes needs none.
void* make_no_lock(cmsContext context) {
    return context;
}
void drop_no_lock(cmsContext, void*) {}
cmsBool lock_nothing(cmsContext, void*) {
    return TRUE;
}
void unlock_nothing(cmsContext, void*) {}

context_handle make_context() {
    constexpr cmsUInt32Number first_version_with_locks = 2060;
    cmsPluginMutex no_locks{{cmsPluginMagicNumber, first_version_with_locks, cmsPluginMutexSig, nullptr},
                            make_no_lock,
                            drop_no_lock,
                            lock_nothing,
                            unlock_nothing};
    return context_handle(cmsCreateContext(&no_locks, nullptr));
}

// The profile is always the same, so that nothing but memory can be wanting.
[[noreturn]] void throw_no_profile() {
    throw std::bad_alloc();
}

// The profile's header tells when it was made: twelve bytes, year, month, day, hour, minute and second.
void set_creation_date(std::vector<std::byte>& profile) {
    constexpr std::size_t creation_date_at = 24;
    constexpr std::array<unsigned char, 12> first_of_january_2000 = {0x07, 0xd0, 0, 1, 0, 1};
    if (profile.size() < creation_date_at + first_of_january_2000.size())
        throw_no_profile();
    std::ranges::transform(first_of_january_2000, profile.begin() + creation_date_at,
                           [](unsigned char value) { return std::byte{value}; });
}

} // namespace

std::vector<std::byte> make_srgb_profile() {
    const context_handle context = make_context();
    if (!context)
        throw_no_profile();
    const profile_handle profile(cmsCreate_sRGBProfileTHR(context.get()));
    cmsUInt32Number size = 0;
    if (!profile || cmsSaveProfileToMem(profile.get(), nullptr, &size) == 0)
        throw_no_profile();
    std::vector<std::byte> bytes(size);
    if (cmsSaveProfileToMem(profile.get(), bytes.data(), &size) == 0)
        throw_no_profile();
    set_creation_date(bytes);
    return bytes;
}

} // namespace sdk_open
