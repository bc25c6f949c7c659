#pragma once

namespace sdk_open {

// How the pixels of a TIFF are stored. Reading gives the same pixels with each.
enum class compression_t { none, deflate, lzw, zstd };

// Whether the libtiff that is there can write it.
[[nodiscard]] bool can_compress(compression_t compression) noexcept;

// Holds for all pictures that this process saves from now on; before the first call they are not compressed.
// Not to be called while one is being saved.
void set_compression(compression_t compression) noexcept;
[[nodiscard]] compression_t inq_compression() noexcept;

// Whether a picture may take the place of a file that has its name by the time that it is whole; else saving
// it fails.
enum class replacing_t { allowed, refused };

// The same holds as for the compression; before the first call it is allowed.
void set_replacing(replacing_t replacing) noexcept;
[[nodiscard]] replacing_t inq_replacing() noexcept;

} // namespace sdk_open
