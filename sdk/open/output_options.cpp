#include "sdk/open/output_options.h"

#include "sdk/open/writing/pixel_layout.h"

namespace sdk_open {
namespace {

compression_t the_compression = compression_t::none;
replacing_t the_replacing = replacing_t::allowed;

} // namespace

bool can_compress(compression_t compression) noexcept {
    return TIFFIsCODECConfigured(tiff_scheme(compression)) != 0;
}

void set_compression(compression_t compression) noexcept {
    the_compression = compression;
}

compression_t inq_compression() noexcept {
    return the_compression;
}

void set_replacing(replacing_t replacing) noexcept {
    the_replacing = replacing;
}

replacing_t inq_replacing() noexcept {
    return the_replacing;
}

} // namespace sdk_open
