#include "tests/sdk/open/conversion_run.h"
#include "tests/sdk/open/samples.h"
#include "tests/support/scratch_folder.h"

#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <stdexcept>

namespace {

using damage = std::function<void(std::string&)>;

// Where a sequence of bytes first stands, counted from a position.
std::size_t find(const std::string& bytes, std::string_view wanted, std::size_t from = 0) {
    const std::size_t at = bytes.find(wanted, from);
    if (at == std::string::npos)
        throw std::runtime_error("the sample has no such bytes");
    return at;
}

// Where the lossless JPEG of a .cr2 starts: at its first table right behind the start of the image.
std::size_t jpeg(const std::string& bytes) {
    return bytes.rfind("\xff\xd8\xff\xc4");
}

// Writes bytes at a distance behind where others first stand in the lossless JPEG.
damage patch_jpeg(std::string_view anchor, std::size_t distance, const std::string& patch) {
    return [=](std::string& bytes) {
        bytes.replace(find(bytes, anchor, jpeg(bytes)) + distance, patch.size(), patch);
    };
}

// Changes the three widths of the slices of 5d2_1comp, which are 2, 152 and 152.
damage patch_slices(const std::string& patch) {
    constexpr std::string_view slices("\2\0\x98\0\x98\0", 6);
    return [=](std::string& bytes) { bytes.replace(find(bytes, slices), patch.size(), patch); };
}

damage cut_to(double part) {
    return [=](std::string& bytes) {
        bytes.resize(static_cast<std::size_t>(static_cast<double>(bytes.size()) * part));
    };
}

damage cut_off(std::size_t count) {
    return [=](std::string& bytes) { bytes.resize(bytes.size() - count); };
}

damage blank(double from, std::size_t count, char value) {
    return [=](std::string& bytes) {
        bytes.replace(static_cast<std::size_t>(static_cast<double>(bytes.size()) * from), count, count,
                      value);
    };
}

damage replace_all(const std::string& text) {
    return [=](std::string& bytes) { bytes = text; };
}

constexpr std::string_view start("\xff\xd8", 2);
constexpr std::string_view table("\xff\xc4", 2);
constexpr std::string_view frame("\xff\xc3", 2);
constexpr std::string_view scan("\xff\xda", 2);

TEST(DamagedInput, IsRefusedWithAReasonBeforeThereIsAnOutput) {
    const std::string cr2 = "5d2_1comp.cr2";
    const std::string crw = "d60_12bit_table2_portrait.crw";
    struct row {
        const char* name;
        std::string file;
        damage inflict;
    };
    const row rows[] = {
        {"empty", cr2, replace_all("")},
        {"text", cr2, replace_all("this is a text and no picture, whatever the name says\n")},
        {"a TIFF of another maker", cr2, [](std::string& bytes) { bytes.replace(8, 2, "\0\0"); }},
        {"header alone", cr2, cut_to(0.001)},
        {"metadata alone", cr2, cut_to(0.05)},
        {"half", cr2, cut_to(0.5)},
        {"all but the last codes", cr2, cut_off(100)},
        {"all but the end marker", cr2, cut_off(3)},
        {"blanked codes", cr2, blank(0.7, 2000, '\0')},
        {"filled codes", cr2, blank(0.7, 2000, '\x55')},
        {"codes that end too soon", cr2,
         [](std::string& bytes) { bytes.replace(bytes.size() - 9000, 2, "\xff\xd9"); }},
        {"bytes left over", cr2, [](std::string& bytes) { bytes.insert(bytes.size() - 3, 40, 'x'); }},
        {"no start of image", cr2, patch_jpeg(start, 0, std::string(2, '\0'))},
        {"table with too many codes", cr2, patch_jpeg(table, 5, "\3\3")},
        {"table without codes", cr2, patch_jpeg(table, 5, std::string(16, '\0'))},
        {"table with an impossible difference", cr2, patch_jpeg(table, 21, "\x1f")},
        {"table for something else", cr2, patch_jpeg(table, 4, std::string(1, 0x13))},
        {"table cut short", cr2, patch_jpeg(table, 2, std::string("\0\x11", 2))},
        {"no frame", cr2, patch_jpeg(frame, 0, "\xff\xfe")},
        {"frame of a lossy picture", cr2, patch_jpeg(frame, 1, "\xc0")},
        {"frame without lines", cr2, patch_jpeg(frame, 5, std::string(2, '\0'))},
        {"frame with more lines", cr2, patch_jpeg(frame, 5, "\x01\x46")},
        {"frame with impossible precision", cr2, patch_jpeg(frame, 4, "\x11")},
        {"scan of a missing table", cr2, patch_jpeg(scan, 6, "0")},
        {"scan with an unknown predictor", cr2, patch_jpeg(scan, 7, "\x09")},
        {"slices of no width", cr2, patch_slices(std::string("\2\0\0\0\xc8\1", 6))},
        {"slices too wide", cr2, patch_slices(std::string("\2\0\xff\xff\xff\xff", 6))},
        {"too many slices", cr2, patch_slices(std::string("\xff\xff\x98\0\x98\0", 6))},
        {"half", crw, cut_to(0.5)},
        {"a byte short", crw, cut_off(1)},
        {"blanked codes", crw, blank(0.5, 2000, '\0')},
        {"filled codes", crw, blank(0.5, 2000, '\x55')},
    };
    const scratch_folder folder;
    const auto raw = folder.inq_path() / "damaged.cr2";
    for (const row& row : rows) {
        SCOPED_TRACE(row.file + ": " + row.name);
        std::string bytes = read_file(sample(row.file));
        row.inflict(bytes);
        write_file(raw, bytes);
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const conversion_run run = convert(raw, folder.inq_path() / "out.tif");
        EXPECT_EQ(testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr(), "");
        EXPECT_NE(run.code, eds_ok);
        EXPECT_NE(run.code, eds_file_not_found);
        EXPECT_TRUE(is_one_line(run.reason)) << run.reason;
        EXPECT_EQ(run.reason.find("cannot write"), std::string::npos) << run.reason;
        EXPECT_EQ(list_folder(folder.inq_path()), std::vector<std::string>{"damaged.cr2"});
    }
}

// Metadata is no reason to refuse a picture. Bytes in front of the preview of a .cr2 are struck at random,
// but not those that place the pixel data; whether the picture is still taken for one is up to what was
// struck.
TEST(DamagedInput, DamagedMetadataHarmsNothing) {
    const scratch_folder folder;
    const auto raw = folder.inq_path() / "damaged.cr2";
    const std::string intact = read_file(sample("5d2_1comp.cr2"));
    int converted = 0;
    unsigned random = 1;
    const auto next = [&random](unsigned below) {
        random = random * 1664525U + 1013904223U;
        return (random >> 8) % below;
    };
    for (int round = 0; round < 60; ++round) {
        std::string bytes = intact;
        for (int strike = 0; strike < 8; ++strike)
            bytes[16 + next(700)] = static_cast<char>(next(4) == 0 ? 0xff : next(256));
        write_file(raw, bytes);
        const conversion_run run = convert(raw, folder.inq_path() / "out.tif");
        converted += run.code == eds_ok ? 1 : 0;
        EXPECT_EQ(run.code == eds_ok, run.reason.empty());
    }
    EXPECT_GT(converted, 20);
}

} // namespace
