#pragma once

#include "sdk/open/decoding/cr2_mosaic.h"
#include "sdk/open/decoding/crw_mosaic.h"
#include "sdk/open/decoding/mosaic_buffer.h"

#include <cstddef>
#include <libraw/libraw.h>
#include <span>
#include <variant>

namespace sdk_open {

// The pixel data of a raw file, ready to be decoded.
class pixel_data final {
public:
    // Finds them by what LibRaw says of the picture that it identified in these bytes. Throws failure where
    // there are none, they are stored in a way that we do not decode, or what is said about them contradicts
    // itself or the file.
    pixel_data(std::span<const std::byte> bytes, LibRaw& identified);

    // Bits per sample.
    [[nodiscard]] unsigned inq_precision() const;

    // Columns before this one are complete when the first row is; 0 where all columns come together.
    [[nodiscard]] unsigned inq_first_column_of_last_slice() const;

    // Decodes all samples, with up to workers threads. Throws failure(damaged_picture) where the data are
    // damaged, and std::bad_alloc. The file's bytes must still be there.
    void decode(const mosaic_buffer& target, unsigned workers, const rows_listener& on_rows) const;

private:
    using stored_mosaic = std::variant<cr2_mosaic, crw_mosaic>;

    [[nodiscard]] static stored_mosaic find(std::span<const std::byte> bytes, LibRaw& identified);

    stored_mosaic m_stored;
};

} // namespace sdk_open
