#include "sdk/open/writing/tiff_handle.h"

#include <cstdarg>
#include <new>

namespace sdk_open {
namespace {

struct options_freer {
    void operator()(TIFFOpenOptions* options) const noexcept { TIFFOpenOptionsFree(options); }
};

constexpr int handled = 1;

int say_nothing(TIFF*, void*, const char*, const char*, va_list) {
    return handled;
}

int close_nothing(thandle_t) {
    return 0;
}

} // namespace

tiff_handle open_tiff(const tiff_storage& storage, const char* mode) {
    constexpr tmsize_t most_memory_at_once = 16 << 20; // bytes; no strip and no field of ours needs more
    const std::unique_ptr<TIFFOpenOptions, options_freer> options(TIFFOpenOptionsAlloc());
    if (!options)
        throw std::bad_alloc();
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), say_nothing, nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), say_nothing, nullptr);
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), most_memory_at_once);
    return tiff_handle(TIFFClientOpenExt("", mode, storage.client, storage.read, storage.write, storage.seek,
                                         close_nothing, storage.size, nullptr, nullptr, options.get()));
}

} // namespace sdk_open
