#include "sdk/open/identifying/stored_jpeg.h"

#include "sdk/open/failure.h"

#include <cstdint>

namespace sdk_open {

lossless_jpeg read_stored_jpeg(std::span<const std::byte> bytes, LibRaw& identified, sampling_t sampling) {
    const auto position = identified.get_internal_data_pointer()->unpacker_data.data_offset;
    if (position < 0 || static_cast<std::uint64_t>(position) >= bytes.size())
        throw_damaged("the pixel data end early");
    return read_lossless_jpeg(bytes.subspan(static_cast<std::size_t>(position)), sampling);
}

} // namespace sdk_open
