#include "sdk/open/writing/tiff_writer.h"

#include "sdk/open/decoding/mosaic_buffer.h"
#include "sdk/open/metadata/metadata_field.h"
#include "sdk/open/metadata/tiff_directory.h"
#include "sdk/open/worker_count.h"
#include "sdk/open/writing/band_compressor.h"
#include "sdk/open/writing/colour_profile.h"
#include "sdk/open/writing/file_sink.h"
#include "sdk/open/writing/pixel_layout.h"
#include "sdk/open/writing/tiff_handle.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <new>
#include <span>
#include <string>
#include <vector>

namespace sdk_open {
namespace {

// The largest picture and two full directories of fields leave room within the 4 GiB that the classic form of
// a TIFF can address, which is the one that every program reads: "wl" needs no BigTIFF. That holds for noise
// too, of which LZW makes a code of up to 12 bits from each byte, and the other codecs less.
constexpr std::uint64_t largest_picture = most_samples * finished_picture::channels * sizeof(std::uint16_t);
constexpr std::uint64_t largest_compressed = largest_picture / 10 * 16;
constexpr std::uint64_t room_for_directories = 16 << 20;
static_assert(largest_compressed + room_for_directories < std::uint64_t{1} << 32);

class tiff_writer final {
public:
    tiff_writer(output_file& file, const pixel_layout& layout)
        : m_layout(layout), m_sink(file), m_tiff(open_tiff(m_sink.inq_storage(), "wl")) {
        check(m_tiff != nullptr);
    }

    // The directories of fields come first, right after the header of the file: then the picture's own, which
    // libtiff puts at the end, can say where they are.
    void write(finished_picture& picture, const picture_metadata& metadata) {
        describe_pixels();
        describe_origin(metadata);
        set(TIFFTAG_EXIFIFD, append_directory(exif_fields(picture, metadata.exif)));
        if (!metadata.gps.empty())
            set(TIFFTAG_GPSIFD, append_directory(metadata.gps));
        if (m_layout.compression == compression_t::none)
            write_pixels(picture);
        else
            write_compressed_pixels(picture);
        check(TIFFWriteDirectory(file()) == 1);
        check(TIFFFlush(file()) == 1);
    }

private:
    [[nodiscard]] TIFF* file() const noexcept { return m_tiff.get(); }

    // Where libtiff fails on its own, it is for lack of memory, and it may have counted fields that it has
    // not got: to close it would end the process.
    void check(bool succeeded) {
        m_sink.rethrow();
        if (succeeded)
            return;
        static_cast<void>(m_tiff.release());
        throw std::bad_alloc();
    }

    template <typename... Values>
    void set(std::uint32_t tag, Values... values) {
        check(TIFFSetField(file(), tag, values...) == 1);
    }

    void set_text(std::uint32_t tag, const std::string& text) {
        if (!text.empty())
            set(tag, text.c_str());
    }

    // Answers where in the file it is.
    std::uint64_t append_directory(const std::vector<metadata_field>& fields) {
        const std::uint64_t position = m_sink.inq_size();
        m_sink.append(make_tiff_directory(fields, static_cast<std::uint32_t>(position)));
        return position;
    }

    // What the raw file says of its colours and its size does not hold for the finished picture.
    static std::vector<metadata_field> exif_fields(const finished_picture& picture,
                                                   std::vector<metadata_field> fields) {
        constexpr std::uint16_t srgb = 1;
        std::erase_if(fields, [](const metadata_field& field) {
            return field.tag == EXIFTAG_COLORSPACE || field.tag == EXIFTAG_PIXELXDIMENSION ||
                   field.tag == EXIFTAG_PIXELYDIMENSION;
        });
        fields.push_back(short_field(EXIFTAG_COLORSPACE, srgb));
        fields.push_back(long_field(EXIFTAG_PIXELXDIMENSION, picture.inq_width()));
        fields.push_back(long_field(EXIFTAG_PIXELYDIMENSION, picture.inq_height()));
        return fields;
    }

    void describe_pixels() {
        check(set_pixel_layout(file(), m_layout));
        set(TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
        set(TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
        set(TIFFTAG_XRESOLUTION, 72.0);
        set(TIFFTAG_YRESOLUTION, 72.0);
        const auto profile = make_srgb_profile();
        set(TIFFTAG_ICCPROFILE, static_cast<std::uint32_t>(profile.size()), profile.data());
    }

    void describe_origin(const picture_metadata& metadata) {
        set_text(TIFFTAG_IMAGEDESCRIPTION, metadata.description);
        set_text(TIFFTAG_MAKE, metadata.make);
        set_text(TIFFTAG_MODEL, metadata.model);
        set_text(TIFFTAG_DATETIME, metadata.date_time);
        set_text(TIFFTAG_ARTIST, metadata.artist);
        set_text(TIFFTAG_COPYRIGHT, metadata.copyright);
    }

    void write_pixels(finished_picture& picture) {
        const auto leave_alone = [](unsigned, std::span<std::uint16_t>) {};
        std::uint32_t number = 0;
        const auto write = [&](unsigned, std::span<std::uint16_t> values) {
            for (; !values.empty(); values = values.subspan(std::min(strip_length(), values.size())))
                write_strip(number++, values.first(std::min(strip_length(), values.size())));
        };
        picture.develop(inq_worker_count(), m_layout.rows_per_strip, leave_alone, write);
    }

    // Every worker compresses the bands that it makes.
    void write_compressed_pixels(finished_picture& picture) {
        const unsigned workers = inq_worker_count();
        std::deque<band_compressor> compressors;
        while (compressors.size() < workers)
            compressors.emplace_back(m_layout);
        const auto compress = [&](unsigned worker, std::span<std::uint16_t> values) {
            compressors[worker].compress(values);
        };
        std::uint32_t number = 0;
        const auto write = [&](unsigned worker, std::span<std::uint16_t>) {
            for (std::size_t i = 0; i < compressors[worker].inq_count(); ++i)
                write_compressed_strip(number++, compressors[worker].inq_strip(i));
        };
        picture.develop(workers, m_layout.rows_per_strip, compress, write);
    }

    [[nodiscard]] std::size_t strip_length() const noexcept { return m_layout.inq_strip_length(); }

    void write_strip(std::uint32_t number, std::span<std::uint16_t> values) {
        const auto size = static_cast<tmsize_t>(values.size_bytes());
        check(TIFFWriteEncodedStrip(file(), number, values.data(), size) == size);
    }

    void write_compressed_strip(std::uint32_t number, std::span<std::byte> bytes) {
        const auto size = static_cast<tmsize_t>(bytes.size());
        check(TIFFWriteRawStrip(file(), number, bytes.data(), size) == size);
    }

    pixel_layout m_layout;
    file_sink m_sink;
    tiff_handle m_tiff;
};

} // namespace

void write_tiff(output_file& file, finished_picture& picture, const picture_metadata& metadata,
                compression_t compression) {
    tiff_writer(file, lay_out(picture.inq_width(), picture.inq_height(), compression))
        .write(picture, metadata);
}

} // namespace sdk_open
