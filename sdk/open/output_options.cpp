#include "sdk/open/output_options.h"

#include "sdk/open/writing/pixel_layout.h"

namespace sdk_open {
namespace {

compression_t the_compression = compression_t::none;
expected_target_t the_expected_target;

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

void set_expected_target(const expected_target_t& expected) noexcept {
    the_expected_target = expected;
}

const expected_target_t& inq_expected_target() noexcept {
    return the_expected_target;
}

} // namespace sdk_open
