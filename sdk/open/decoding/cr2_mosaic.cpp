#include "sdk/open/decoding/cr2_mosaic.h"

#include "sdk/open/decoding/lossless_jpeg_decoder.h"
#include "sdk/open/failure.h"

#include <algorithm>

namespace sdk_open {

void decode_mosaic(const cr2_mosaic& source, const mosaic_buffer& target, unsigned workers,
                   const rows_listener& on_rows) {
    if (source.jpeg.inq_sample_count() != target.samples.size())
        throw_damaged("the pixel data have another size than the picture");
    slice_writer writer(source.slices, target);
    lossless_jpeg_decoder decoder(source.jpeg, workers);
    for (unsigned line = 0; line < source.jpeg.height; ++line) {
        writer.write(decoder.decode_line());
        if (source.lead == 0)
            on_rows(writer.inq_finished_rows());
    }
    decoder.finish();
    if (source.lead != 0) {
        const auto missing = std::shift_left(target.samples.begin(), target.samples.end(), source.lead);
        std::fill(missing, target.samples.end(), std::uint16_t{0});
        on_rows(target.height);
    }
}

} // namespace sdk_open
