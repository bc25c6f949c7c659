#include "tests/sdk/open/conversion_run.h"
#include "tests/sdk/open/samples.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>
#include <memory>
#include <tiffio.h>

namespace {

struct tiff_closer {
    void operator()(TIFF* file) const noexcept { TIFFClose(file); }
};
using tiff_handle = std::unique_ptr<TIFF, tiff_closer>;

std::string text(const tiff_handle& file, std::uint32_t tag) {
    const char* found = nullptr;
    return TIFFGetField(file.get(), tag, &found) == 1 ? found : "none";
}

double real(const tiff_handle& file, std::uint32_t tag) {
    float found = 0;
    return TIFFGetField(file.get(), tag, &found) == 1 ? double{found} : -1.0;
}

int short_number(const tiff_handle& file, std::uint32_t tag) {
    std::uint16_t found = 0;
    return TIFFGetField(file.get(), tag, &found) == 1 ? found : -1;
}

int sensitivity(const tiff_handle& file) {
    std::uint16_t count = 0;
    const std::uint16_t* found = nullptr;
    return TIFFGetField(file.get(), EXIFTAG_ISOSPEEDRATINGS, &count, &found) == 1 && count == 1 ? *found : -1;
}

TEST(Metadata, IsCarriedOver) {
    struct row {
        std::filesystem::path file;
        const char* model;
        const char* date_time;
        double exposure_time;
        double f_number;
        int iso;
        double focal_length;
        const char* lens;
    };
    const row rows[] = {
        {real_sample(), "Canon EOS 30D", "2009:07:21 13:03:20", 1 / 400.0, 22, 640, 22,
         "EF-S 18-55mm f/3.5-5.6"},
        {sample("5d2_14bit_4comp_3slices_portrait.cr2"), "Canon EOS 5D Mark II", "2009:06:15 12:34:56",
         1 / 125.0, 8, 400, 50, "EF50mm f/1.8 II"},
        {sample("10d_12bit_low_bits.crw"), "Canon EOS 10D", "2009:06:15 12:34:56", 1 / 125.0, 8, 100, 50,
         "none"},
    };
    const scratch_folder folder;
    const auto tiff = folder.inq_path() / "out.tif";
    for (const row& row : rows) {
        SCOPED_TRACE(row.file);
        ASSERT_EQ(convert(row.file, tiff).code, eds_ok);
        const tiff_handle file(TIFFOpen(tiff.c_str(), "r"));
        ASSERT_NE(file, nullptr);
        EXPECT_EQ(text(file, TIFFTAG_MAKE), "Canon");
        EXPECT_EQ(text(file, TIFFTAG_MODEL), row.model);
        EXPECT_EQ(text(file, TIFFTAG_DATETIME), row.date_time);
        EXPECT_EQ(short_number(file, TIFFTAG_ORIENTATION), ORIENTATION_TOPLEFT);
        EXPECT_EQ(short_number(file, TIFFTAG_COMPRESSION), COMPRESSION_NONE);
        std::uint32_t profile_size = 0;
        const void* profile = nullptr;
        EXPECT_EQ(TIFFGetField(file.get(), TIFFTAG_ICCPROFILE, &profile_size, &profile), 1);
        std::uint64_t exif = 0;
        ASSERT_EQ(TIFFGetField(file.get(), TIFFTAG_EXIFIFD, &exif), 1);
        ASSERT_EQ(TIFFReadEXIFDirectory(file.get(), exif), 1);
        EXPECT_EQ(text(file, EXIFTAG_DATETIMEORIGINAL), row.date_time);
        EXPECT_NEAR(real(file, EXIFTAG_EXPOSURETIME), row.exposure_time, row.exposure_time * 0.01);
        EXPECT_NEAR(real(file, EXIFTAG_FNUMBER), row.f_number, 0.01);
        EXPECT_EQ(sensitivity(file), row.iso);
        EXPECT_NEAR(real(file, EXIFTAG_FOCALLENGTH), row.focal_length, 0.01);
        EXPECT_EQ(text(file, EXIFTAG_LENSMODEL), row.lens);
        EXPECT_EQ(short_number(file, EXIFTAG_COLORSPACE), 1);
    }
}

} // namespace
