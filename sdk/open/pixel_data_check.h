#pragma once

#include "sdk/open/raw_format.h"

#include <cstddef>
#include <cstdint>
#include <libraw/libraw.h>
#include <span>

namespace sdk_open {

// A raw picture with more samples is refused; no camera has made one.
inline constexpr std::uint64_t most_samples = 400'000'000;

// Finds the damage that LibRaw's decoders would not notice, or would not survive. They return without a word,
// and with a blank picture, where the headers or code tables in front of the pixel data make no sense; they
// take a code that stands for nothing as a difference of zero that took no bits; they divide by the widths of
// the slices and store wherever those lead; they leave samples unset where the data are for a smaller
// picture.
//
// Both checks throw failure.
class pixel_data_check final {
public:
    // The bytes of the file, and the decoder that is to identify and unpack them. Throws where they are no
    // raw file of a format that we read.
    pixel_data_check(std::span<const std::byte> bytes, LibRaw& libraw);

    // Once the picture is identified: what is said about the pixel data agrees with itself and with the file.
    void before_decoding();

    // Once the picture is decoded: its codes end where the pixel data end. Takes the position in the file
    // where the decoder stopped reading.
    void after_decoding(std::size_t stop) const;

    // Bits per sample, known after before_decoding(); 0 where the format does not say.
    [[nodiscard]] unsigned inq_precision() const noexcept { return m_precision; }

private:
    [[nodiscard]] const libraw_image_sizes_t& sizes() const noexcept { return m_libraw.imgdata.sizes; }
    [[nodiscard]] const unpacker_data_t& unpacker() const noexcept;
    [[nodiscard]] std::uint64_t sample_count() const noexcept;
    [[nodiscard]] bool decodes_with(const char* name) const;
    void check_size() const;
    void check_cr2();
    void check_slices() const;
    void check_crw();

    std::span<const std::byte> m_bytes;
    LibRaw& m_libraw;
    raw_format_t m_format;
    std::size_t m_raw_data_end = 0; // of a .crw
    unsigned m_precision = 0;
};

} // namespace sdk_open
