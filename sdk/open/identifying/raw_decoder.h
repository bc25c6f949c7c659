#pragma once

#include "sdk/open/identifying/bounded_datastream.h"
#include "sdk/open/identifying/own_decoder_libraw.h"
#include "sdk/open/identifying/pixel_data.h"

#include <cstddef>
#include <cstdint>
#include <libraw/libraw.h>
#include <memory>
#include <span>

namespace sdk_open {

// The samples as they come from the sensor, the masked borders included, row by row without gaps.
struct mosaic_view {
    std::span<const std::uint16_t> samples;
    unsigned width;
    unsigned height;
};

// Identifies a raw picture, and decodes its mosaic. The file's bytes must stay until that is done.
class raw_decoder final {
public:
    // Identifies: the picture's size, its colours and its metadata are known then. Throws failure where the
    // bytes are no raw picture that we decode, and std::bad_alloc.
    explicit raw_decoder(std::span<const std::byte> bytes);

    // Decodes a mosaic of red, green and blue, once, with up to workers threads. The first call of on_rows
    // says that the black and the white level are known and that the mosaic is there, as far as it says; the
    // last one comes when all of it is. Throws failure where the pixel data are damaged, std::bad_alloc, and
    // what on_rows throws.
    void decode(unsigned workers, const rows_listener& on_rows);

    [[nodiscard]] mosaic_view inq_mosaic() const noexcept;

    // What LibRaw knows of the picture.
    [[nodiscard]] const libraw_data_t& inq_data() const noexcept { return m_libraw->imgdata; }

    // Throws failure(not_supported) where LibRaw has no colour matrix of this camera.
    void require_colours() const;

    // Decodes all of it, once, for LibRaw to develop. Throws failure where the pixel data are damaged, and
    // std::bad_alloc.
    [[nodiscard]] own_decoder_libraw& decode_whole();

private:
    void decode_into(const mosaic_buffer& target, unsigned workers, const rows_listener& on_rows);
    void unpack();

    bounded_datastream m_stream; // which LibRaw reads from
    std::unique_ptr<own_decoder_libraw> m_libraw;
    std::unique_ptr<const pixel_data> m_stored; // until it is decoded; null where LibRaw must unpack
    bool m_is_packed = false;                   // for LibRaw to unpack
};

} // namespace sdk_open
