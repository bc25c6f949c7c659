#include "tests/sdk/open/conversion_run.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace {

using damage = std::function<void(std::string&)>;

// Overwrites what stands at a distance behind an anchor, which is looked for from some position on.
void overwrite(std::string& file, std::size_t from, std::string_view anchor, std::size_t distance,
               const std::string& bytes) {
    const std::size_t at = file.find(anchor, from);
    ASSERT_NE(at, std::string::npos) << "the sample has no such bytes";
    file.replace(at + distance, bytes.size(), bytes);
}

damage patch(std::string_view anchor, std::size_t distance, const std::string& bytes) {
    return [=](std::string& file) { overwrite(file, 0, anchor, distance, bytes); };
}

// The same in the lossless JPEG of a .cr2, which starts with its first table behind the start of the image.
damage patch_jpeg(std::string_view anchor, std::size_t distance, const std::string& bytes) {
    return
        [=](std::string& file) { overwrite(file, file.rfind("\xff\xd8\xff\xc4"), anchor, distance, bytes); };
}

damage cut_off(std::size_t count) {
    return [=](std::string& file) { file.resize(file.size() - count); };
}

damage cut_to(std::size_t percent) {
    return [=](std::string& file) { file.resize(file.size() * percent / 100); };
}

// Overwrites bytes from some way into the file.
damage fill(std::size_t percent, char value) {
    return [=](std::string& file) { file.replace(file.size() * percent / 100, 2000, 2000, value); };
}

constexpr std::string_view slices("\2\0\x98\0\x98\0", 6); // of 5d2_1comp: two of 152 columns and one more
constexpr std::string_view start("\xff\xd8", 2);
constexpr std::string_view table("\xff\xc4", 2);
constexpr std::string_view frame("\xff\xc3", 2);
constexpr std::string_view scan("\xff\xda", 2);

TEST(damaged_input, is_refused_with_a_reason_before_there_is_an_output) {
    const std::string cr2 = "5d2_1comp.cr2";
    const std::string crw = "d60_12bit_table2_portrait.crw";
    struct row {
        const char* name;
        std::string file;
        damage inflict;
    };
    const row rows[] = {
        {"empty", cr2, cut_to(0)},
        {"a TIFF of another maker", cr2, patch("CR", 0, "XX")},
        {"metadata alone", cr2, cut_to(5)},
        {"half", cr2, cut_to(50)},
        {"all but the last codes", cr2, cut_off(100)},
        {"all but the end marker", cr2, cut_off(3)},
        {"blanked codes", cr2, fill(70, '\0')},
        {"filled codes", cr2, fill(70, '\x55')},
        {"codes that end too soon", cr2,
         [](std::string& file) { file.replace(file.size() - 9000, 2, "\xff\xd9"); }},
        {"bytes left over", cr2, [](std::string& file) { file.insert(file.size() - 3, 40, 'x'); }},
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
        {"slices of no width", cr2, patch(slices, 0, std::string("\2\0\0\0\xc8\1", 6))},
        {"slices too wide", cr2, patch(slices, 2, "\xff\xff\xff\xff")},
        {"too many slices", cr2, patch(slices, 0, "\xff\xff")},
        {"half", crw, cut_to(50)},
        {"a byte short", crw, cut_off(1)},
        {"blanked codes", crw, fill(50, '\0')},
        {"filled codes", crw, fill(50, '\x55')},
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
        EXPECT_FALSE(run.reason.empty());
        EXPECT_EQ(run.reason.find("cannot write"), std::string::npos) << run.reason;
        EXPECT_EQ(list_folder(folder.inq_path()), std::vector<std::string>{"damaged.cr2"});
    }
}

// Metadata is no reason to refuse a picture. Bytes in front of the preview of a .cr2 are struck at random,
// but not those that place the pixel data; whether the picture is still taken for one is up to what was
// struck.
TEST(damaged_input, damaged_metadata_harm_nothing) {
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
