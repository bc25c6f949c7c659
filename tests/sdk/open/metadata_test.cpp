#include "sdk/open/tiff_directory.h"
#include "tests/sdk/open/conversion_run.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <tiffio.h>
#include <utility>
#include <vector>

namespace {

using namespace std::string_literals;
using tiff_handle = std::unique_ptr<TIFF, decltype([](TIFF* open) { TIFFClose(open); })>;

constexpr std::size_t exif_position = 8; // right behind the header

// 0x3412 gives the bytes 12 34 00 00.
std::string number(std::size_t value, unsigned size = 4) {
    std::string bytes;
    for (unsigned at = 0; at < size; ++at)
        bytes.push_back(static_cast<char>(value >> 8 * at & 0xff));
    return bytes;
}

std::string fraction(std::uint32_t numerator, std::uint32_t denominator) {
    return number(numerator) + number(denominator);
}

std::string entry(unsigned tag, unsigned type, std::size_t count, const std::string& value) {
    return number(tag, 2) + number(type, 2) + number(count) + value;
}

std::string exif_value(const std::string& tiff, unsigned tag) {
    for (const auto& field : sdk_open::read_tiff_directory(std::as_bytes(std::span(tiff)), exif_position))
        if (field.tag == tag) {
            std::string value(field.bytes.size(), '\0');
            std::ranges::transform(field.bytes, value.begin(),
                                   [](std::byte unit) { return static_cast<char>(unit); });
            return value;
        }
    return "none";
}

TEST(metadata, is_carried_over) {
    struct row {
        std::filesystem::path file;
        std::vector<std::pair<unsigned, std::string>> values;
    };
    const row rows[] = {
        {real_sample(),
         {{EXIFTAG_EXIFVERSION, "0221"},
          {EXIFTAG_DATETIMEORIGINAL, "2009:07:21 13:03:20\0"s},
          {EXIFTAG_EXPOSURETIME, fraction(1, 400)},
          {EXIFTAG_FNUMBER, fraction(22, 1)},
          {EXIFTAG_ISOSPEEDRATINGS, number(640, 2)},
          {EXIFTAG_LENSMODEL, "EF-S 18-55mm f/3.5-5.6\0"s}}},
        {sample("10d_12bit_low_bits.crw"),
         {{EXIFTAG_EXIFVERSION, "0230"},
          {EXIFTAG_DATETIMEORIGINAL, "2009:06:15 12:34:56\0"s},
          {EXIFTAG_EXPOSURETIME, fraction(1, 125)},
          {EXIFTAG_FNUMBER, fraction(8, 1)},
          {EXIFTAG_ISOSPEEDRATINGS, number(100, 2)},
          {EXIFTAG_FOCALLENGTH, fraction(50, 1)}}},
    };
    const scratch_folder folder;
    const auto tiff = folder.inq_path() / "out.tif";
    for (const row& row : rows) {
        SCOPED_TRACE(row.file);
        ASSERT_EQ(convert(row.file, tiff).code, eds_ok);
        const std::string bytes = read_file(tiff);
        for (const auto& [tag, value] : row.values)
            EXPECT_EQ(exif_value(bytes, tag), value) << tag;
        const tiff_handle file(TIFFOpen(tiff.c_str(), "r"));
        const char* make = "";
        std::uint16_t orientation = 0;
        std::uint32_t profile_size = 0;
        const void* profile = nullptr;
        EXPECT_EQ(TIFFGetField(file.get(), TIFFTAG_MAKE, &make), 1);
        EXPECT_STREQ(make, "Canon");
        EXPECT_EQ(TIFFGetField(file.get(), TIFFTAG_ORIENTATION, &orientation), 1);
        EXPECT_EQ(orientation, ORIENTATION_TOPLEFT);
        EXPECT_EQ(TIFFGetField(file.get(), TIFFTAG_ICCPROFILE, &profile_size, &profile), 1);
    }
}

// Puts directories of our own behind the picture, out of order and with entries that must not go along.
TEST(metadata, fields_go_over_byte_for_byte) {
    std::string raw = read_file(sample("5d2_1comp.cr2"));
    const std::size_t maker_note = raw.find("\x7c\x92\x07\0"s);
    ASSERT_NE(maker_note, std::string::npos);
    const std::size_t values = raw.size();
    const std::string exposures = fraction(1, 0) + fraction(0, 0) + fraction(0xffffffff, 3); // that is -1/3
    const std::string latitude = fraction(47, 1) + fraction(7, 1) + fraction(244416, 10000);
    raw += exposures + latitude + "Hello" + "Zo\xc3\xab\0"s;
    const std::size_t exif = raw.size();
    raw += number(14, 2);
    raw += entry(0x9204, 10, 1, number(values + 16));
    raw += entry(0x829a, 5, 1, number(values));
    raw += entry(0x829a, 5, 1, number(values + 16)); // once more
    raw += entry(0x829d, 5, 1, number(values + 8));
    raw += raw.substr(maker_note, 12); // means nothing elsewhere
    raw += entry(0x8827, 3, 1, number(400));
    raw += entry(0x9000, 7, 4, "0221");
    raw += entry(0x9201, 3, 0xffffffff, number(0));  // too large
    raw += entry(0x9202, 99, 1, number(0));          // of an unknown type
    raw += entry(0x9205, 5, 1, number(0xfffffff8));  // outside the file
    raw += entry(0xa005, 4, 1, number(values));      // points into the raw file
    raw += entry(0xa001, 3, 1, number(2));           // of other colours
    raw += entry(0x9286, 7, 5, number(values + 48)); // of odd length
    raw += entry(0xa434, 2, 3, "XY\0\0"s);
    const std::size_t gps = raw.size();
    raw += number(2, 2) + entry(1, 2, 2, "N\0\0\0"s) + entry(2, 5, 3, number(values + 24));
    constexpr std::size_t first_entry = 18;
    constexpr std::size_t entry_size = 12;
    raw.replace(first_entry + 9 * entry_size, entry_size, entry(0x8825, 4, 1, number(gps)));
    raw.replace(first_entry + 10 * entry_size, entry_size, entry(0x010e, 2, 5, number(values + 53)));
    raw.replace(first_entry + 13 * entry_size, entry_size, entry(0x8769, 4, 1, number(exif)));

    std::string wanted = number(11, 2);
    wanted += entry(0x829a, 5, 1, number(146)) + entry(0x829d, 5, 1, number(154));
    wanted += entry(0x8827, 3, 1, number(400)) + entry(0x9000, 7, 4, "0221");
    wanted += entry(0x9204, 10, 1, number(162)) + entry(0x9286, 7, 5, number(170));
    wanted += entry(0xa000, 7, 4, "0100") + entry(0xa001, 3, 1, number(1)); // the first was missing
    wanted += entry(0xa002, 4, 1, number(400)) + entry(0xa003, 4, 1, number(300));
    wanted += entry(0xa434, 2, 3, "XY\0\0"s) + number(0) + exposures + "Hello\0"s;
    wanted += number(2, 2) + entry(1, 2, 2, "N\0\0\0"s) + entry(2, 5, 3, number(206)) + number(0) + latitude;

    const scratch_folder folder;
    const auto tiff = folder.inq_path() / "out.tif";
    write_file(folder.inq_path() / "in.cr2", raw);
    ASSERT_EQ(convert(folder.inq_path() / "in.cr2", tiff).code, eds_ok);
    EXPECT_EQ(read_file(tiff).substr(exif_position, wanted.size()), wanted);
    const tiff_handle file(TIFFOpen(tiff.c_str(), "r"));
    std::uint64_t exif_offset = 0;
    std::uint64_t gps_offset = 0;
    const char* description = "";
    EXPECT_EQ(TIFFGetField(file.get(), TIFFTAG_EXIFIFD, &exif_offset), 1);
    EXPECT_EQ(TIFFGetField(file.get(), TIFFTAG_GPSIFD, &gps_offset), 1);
    EXPECT_EQ(TIFFGetField(file.get(), TIFFTAG_IMAGEDESCRIPTION, &description), 1);
    EXPECT_EQ(exif_offset, exif_position);
    EXPECT_EQ(gps_offset, 176U);
    EXPECT_STREQ(description, "Zo\xc3\xab");
}

} // namespace
