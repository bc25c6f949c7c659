#pragma once

#include "sdk/open/system/system_calls.h"

#include <optional>

namespace sdk_open {

// How the pixels of a TIFF are stored. Reading gives the same pixels with each.
enum class compression_t { none, deflate, lzw, zstd };

// Whether the libtiff that is there can write it.
[[nodiscard]] bool can_compress(compression_t compression) noexcept;

// Holds for all pictures that this process saves from now on; before the first call they are not compressed.
// Not to be called while one is being saved.
void set_compression(compression_t compression) noexcept;
[[nodiscard]] compression_t inq_compression() noexcept;

// The target as a picture may replace it. Where another file has its name by the time that the picture is
// whole, or it has changed, saving fails; where it is gone, nothing is lost. No value: any file is replaced.
using expected_target_t = std::optional<system_calls::file_status>;

// The same holds as for the compression; before the first call any file is replaced.
void set_expected_target(const expected_target_t& expected) noexcept;
[[nodiscard]] const expected_target_t& inq_expected_target() noexcept;

} // namespace sdk_open
