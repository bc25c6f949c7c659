#include "tests/sdk/open/conversion_run.h"
#include "tests/sdk/open/samples.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <numeric>
#include <tiff.h>
#include <vector>

namespace {

using namespace std::string_literals;

// The low byte first.
std::string number(std::size_t value, unsigned size = 4) {
    return size == 0 ? "" : static_cast<char>(value & 0xff) + number(value >> 8, size - 1);
}

std::string fraction(std::uint32_t numerator, std::uint32_t denominator) {
    return number(numerator) + number(denominator);
}

std::string entry(unsigned tag, unsigned type, std::size_t count, const std::string& value = "") {
    return number(tag, 2) + number(type, 2) + number(count) + value;
}

std::string converted(const std::filesystem::path& raw) {
    const scratch_folder folder;
    EXPECT_EQ(convert(raw, folder.inq_path() / "out.tif"), "");
    return read_file(folder.inq_path() / "out.tif");
}

void expect_to_hold(const std::string& tiff, const std::vector<std::string>& parts) {
    for (const std::string& part : parts)
        EXPECT_NE(tiff.find(part), std::string::npos) << testing::PrintToString(part);
}

// Each entry holds its value or is followed by it.
TEST(metadata, is_carried_over) {
    const std::string profile = "acsp";
    const std::string upright = entry(TIFFTAG_ORIENTATION, 3, 1, number(ORIENTATION_TOPLEFT));
    expect_to_hold(converted(real_sample()),
                   {entry(TIFFTAG_IMAGEWIDTH, 3, 1, number(3504)), upright, profile, "Canon\0"s,
                    entry(TIFFTAG_IMAGELENGTH, 3, 1, number(2336)), "Canon EOS 30D\0"s,
                    entry(EXIFTAG_EXIFVERSION, 7, 4, "0221"), "EF-S 18-55mm f/3.5-5.6\0"s,
                    entry(EXIFTAG_DATETIMEORIGINAL, 2, 20), "2009:07:21 13:03:20\0"s,
                    entry(EXIFTAG_EXPOSURETIME, 5, 1), fraction(1, 400), entry(EXIFTAG_FNUMBER, 5, 1),
                    fraction(22, 1), entry(EXIFTAG_ISOSPEEDRATINGS, 3, 1, number(640))});
    expect_to_hold(converted(sample("10d_12bit_low_bits.crw")),
                   {"Canon\0"s, upright, profile, entry(EXIFTAG_EXIFVERSION, 7, 4, "0230"),
                    entry(EXIFTAG_DATETIMEORIGINAL, 2, 20), "2009:06:15 12:34:56\0"s,
                    entry(EXIFTAG_EXPOSURETIME, 5, 1), fraction(1, 125), entry(EXIFTAG_FNUMBER, 5, 1),
                    fraction(8, 1), entry(EXIFTAG_ISOSPEEDRATINGS, 3, 1, number(100)),
                    entry(EXIFTAG_FOCALLENGTH, 5, 1), fraction(50, 1)});
}

// Puts directories of our own after the picture, out of order and with entries that must not go along.
TEST(metadata, fields_go_over_byte_for_byte) {
    std::string raw = read_file(sample("5d2_1comp.cr2"));
    const std::size_t values = raw.size();
    const std::string maker_note = raw.substr(raw.find("\x7c\x92\x07\0"s), 12);
    const std::string exposures = fraction(1, 0) + fraction(0, 0) + fraction(0xffffffff, 3); // that is -1/3
    const std::string exif[] = {
        entry(0x9204, 10, 1, number(values + 16)),
        entry(0x829a, 5, 1, number(values)),
        entry(0x829d, 5, 1, number(values + 8)),
        maker_note, // means nothing elsewhere
        entry(0x8827, 3, 1, number(400)),
        entry(0x9000, 7, 4, "0221"),
        entry(0x9201, 3, 0xffffffff, number(0)),  // too large
        entry(0x9202, 99, 1, number(0)),          // of an unknown type
        entry(0x9205, 5, 1, number(0xfffffff8)),  // outside the file
        entry(0xa005, 4, 1, number(values)),      // points into the raw file
        entry(0xa001, 3, 1, number(2)),           // of other colours
        entry(0x9286, 7, 5, number(values + 24)), // of odd length
        entry(0xa434, 2, 3, "XY\0\0"s),
    };
    raw += exposures + "Hello" + "Zo\xc3\xab\0"s;
    constexpr std::size_t first_entry = 18;
    raw.replace(first_entry + 13 * 12, 12, entry(0x8769, 4, 1, number(raw.size())));
    raw = std::accumulate(std::begin(exif), std::end(exif), raw + number(std::size(exif), 2));
    raw.replace(first_entry + 9 * 12, 12, entry(0x8825, 4, 1, number(raw.size())));
    raw.replace(first_entry + 10 * 12, 12, entry(0x010e, 2, 5, number(values + 29)));
    raw += number(1, 2) + entry(1, 2, 2, "N\0\0\0"s);
    const scratch_folder folder;
    write_file(folder.inq_path() / "in.cr2", raw);
    const std::string tiff = converted(folder.inq_path() / "in.cr2");

    std::string wanted = number(11, 2);
    wanted += entry(0x829a, 5, 1, number(146)) + entry(0x829d, 5, 1, number(154));
    wanted += entry(0x8827, 3, 1, number(400)) + entry(0x9000, 7, 4, "0221");
    wanted += entry(0x9204, 10, 1, number(162)) + entry(0x9286, 7, 5, number(170));
    wanted += entry(0xa000, 7, 4, "0100") + entry(0xa001, 3, 1, number(1)); // the first was missing
    wanted += entry(0xa002, 4, 1, number(400)) + entry(0xa003, 4, 1, number(300));
    wanted += entry(0xa434, 2, 3, "XY\0\0"s) + number(0) + exposures + "Hello\0"s;
    wanted += number(1, 2) + entry(1, 2, 2, "N\0\0\0"s) + number(0);
    EXPECT_EQ(tiff.substr(8, wanted.size()), wanted) << "right after the header";
    expect_to_hold(tiff,
                   {entry(0x8769, 13, 1, number(8)), entry(0x8825, 13, 1, number(176)), "Zo\xc3\xab\0"s});
}

} // namespace
