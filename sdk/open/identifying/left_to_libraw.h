#pragma once

#include <cstddef>
#include <libraw/libraw.h>
#include <span>
#include <string_view>

namespace sdk_open {

// Which of its decoders LibRaw would take, for example "canon_load_raw()"; empty where it has none.
[[nodiscard]] std::string_view decoder_name(LibRaw& identified);

// Whether LibRaw itself must decode it: a picture of reduced resolution, which has all its colours at each
// pixel, or the plain samples of the oldest .crw.
[[nodiscard]] bool is_left_to_libraw(LibRaw& identified);

// Looks at such a picture, in these bytes, before LibRaw takes memory for it. Throws failure where its size
// cannot be, or LibRaw would trust what it must not.
void check_packed(LibRaw& identified, std::span<const std::byte> bytes);

// Looks at where LibRaw has come to in the file. Throws failure(damaged_picture) where that is not the end of
// the pixel data: it takes no notice of headers that it does not understand, and leaves the picture blank.
void check_unpacked(LibRaw& unpacked, LibRaw_abstract_datastream& stream);

} // namespace sdk_open
