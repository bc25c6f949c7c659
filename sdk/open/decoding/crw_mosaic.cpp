#include "sdk/open/decoding/crw_mosaic.h"

#include "sdk/open/decoding/crw_block_decoder.h"
#include "sdk/open/failure.h"

#include <algorithm>

namespace sdk_open {
namespace {

constexpr std::size_t unused_size = 514; // bytes in front of the codes
constexpr std::size_t samples_per_byte = 4;
constexpr unsigned rows_at_once = 8;

// Nothing tells whether there are low bits but the bytes themselves: in codes, each byte ff has a zero after
// it. A few thousand bytes are enough to meet with many of them.
bool has_low_bits(std::span<const std::byte> record) {
    constexpr std::size_t looked_at = 0x4000;
    bool has_zeros_behind = false;
    const auto bytes = record.first(std::min(record.size(), looked_at));
    for (std::size_t at = unused_size; at + 1 < bytes.size(); ++at)
        if (bytes[at] == std::byte{0xff}) {
            if (bytes[at + 1] != std::byte{0})
                return true;
            has_zeros_behind = true;
        }
    return !has_zeros_behind;
}

// The cameras whose mosaic is so wide store dark samples two too low.
unsigned dark_correction(unsigned width) noexcept {
    return width == 2672 ? 2 : 0;
}

void add_low_bits(std::span<const std::byte> low_bits, unsigned dark_offset,
                  std::span<std::uint16_t> samples) {
    constexpr unsigned dark = 512;
    for (std::size_t at = 0; at < samples.size(); ++at) {
        const auto four = std::to_integer<unsigned>(low_bits[at / samples_per_byte]);
        const unsigned sample = samples[at] * 4U + (four >> at % samples_per_byte * 2 & 3U);
        samples[at] = static_cast<std::uint16_t>(sample < dark ? sample + dark_offset : sample);
    }
}

} // namespace

crw_mosaic read_crw_mosaic(std::span<const std::byte> record, unsigned table, std::size_t sample_count) {
    const std::size_t low_size =
        record.size() > unused_size && has_low_bits(record) ? sample_count / samples_per_byte : 0;
    if (record.size() < low_size + unused_size)
        throw_damaged("the pixel data end early");
    return {table, record.first(low_size), record.subspan(low_size + unused_size)};
}

void decode_mosaic(const crw_mosaic& source, const mosaic_buffer& target, unsigned /*workers*/,
                   const rows_listener& on_rows) {
    const std::size_t last_samples = std::size_t{target.height % rows_at_once} * target.width;
    if (target.width % rows_at_once != 0 || last_samples % crw_block_decoder::block_size != 0)
        throw_damaged("the picture has an impossible size");
    crw_block_decoder decoder(source.codes, source.table, target.width);
    for (unsigned row = 0; row < target.height; row += rows_at_once) {
        const unsigned end = std::min(row + rows_at_once, target.height);
        const std::size_t first = std::size_t{row} * target.width;
        const auto samples = target.samples.subspan(first, std::size_t{end - row} * target.width);
        decoder.decode_rows(samples);
        if (!source.low_bits.empty())
            add_low_bits(source.low_bits.subspan(first / samples_per_byte), dark_correction(target.width),
                         samples);
        on_rows(end);
    }
    decoder.finish();
}

} // namespace sdk_open
