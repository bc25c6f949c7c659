#include "sdk/open/failure.h"
#include "sdk/open/raw_decoder.h"
#include "tests/sdk/open/conversion_run.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace {

using damage = std::function<void(std::string&)>;

// Overwrites what stands at a distance behind the last place of an anchor: for a marker's that is in the
// lossless JPEG of the picture.
damage patch(std::string_view anchor, std::size_t distance, const std::string& bytes) {
    return [=](std::string& file) { file.replace(file.rfind(anchor) + distance, bytes.size(), bytes); };
}

damage cut_off(std::size_t n_bytes) {
    return [=](std::string& file) { file.resize(file.size() - n_bytes); };
}

damage fill(std::size_t position, char value) {
    return [=](std::string& file) { file.replace(position, 2000, 2000, value); };
}

constexpr std::string_view slices("\2\0\x98\0\x98\0", 6);    // of 5d2_1comp: two of 152 columns and one more
constexpr std::string_view borders("\x30\0\x14\0\xbf\1", 6); // of 5d2_1comp: left, top and right
constexpr auto table = "\xff\xc4";
constexpr auto frame = "\xff\xc3";
constexpr auto scan = "\xff\xda";

TEST(damaged_input, is_refused_with_a_reason_before_there_is_an_output) {
    constexpr auto cr2 = "5d2_1comp.cr2";
    constexpr auto crw = "d60_12bit_table2_portrait.crw";
    const std::tuple<const char*, const char*, damage> rows[] = {
        {"empty", cr2, [](std::string& file) { file.clear(); }},
        {"a TIFF of another maker", cr2, patch("CR\2", 0, "XX")},
        {"metadata alone", cr2, cut_off(258'000)},
        {"all but the last codes", cr2, cut_off(100)},
        {"blanked codes", cr2, fill(190'000, '\0')},
        {"filled codes", cr2, fill(190'000, '\x55')},
        {"codes that end too soon", cr2, [](std::string& file) { file.replace(263'000, 2, "\xff\xd9"); }},
        {"bytes left over", cr2, [](std::string& file) { file.insert(file.size() - 3, 40, 'x'); }},
        {"no start of image", cr2, patch("\xff\xd8", 0, "  ")},
        {"table with too many codes", cr2, patch(table, 5, "\3\3")},
        {"table without codes", cr2, patch(table, 5, std::string(16, '\0'))},
        {"table with an impossible difference", cr2, patch(table, 21, "\x1f")},
        {"table for something else", cr2, patch(table, 4, "\x13")},
        {"table cut short", cr2, patch(table, 3, "\x11")},
        {"frame of a lossy picture", cr2, patch(frame, 1, "\xc0")},
        {"frame without lines", cr2, patch(frame, 5, std::string(2, '\0'))},
        {"frame with more lines", cr2, patch(frame, 5, "\x01\x46")},
        {"frame with impossible precision", cr2, patch(frame, 4, "\x11")},
        {"scan of a missing table", cr2, patch(scan, 6, "0")},
        {"scan with an unknown predictor", cr2, patch(scan, 7, "\x09")},
        {"slices of no width", cr2, patch(slices, 2, std::string("\0\0\xc8\1", 4))},
        {"too many slices", cr2, patch(slices, 0, "\xff\xff")},
        {"columns beyond the sensor", cr2, patch(borders, 4, "\xf4")},
        {"half", crw, cut_off(160'000)},
        {"a byte short", crw, cut_off(1)},
        {"blanked codes", crw, fill(160'000, '\0')},
        {"filled codes", crw, fill(160'000, '\x55')},
    };
    const scratch_folder folder;
    const auto raw = folder.inq_path() / "damaged.cr2";
    for (const auto& [name, file, inflict] : rows) {
        SCOPED_TRACE(name + std::string(" in ") + file);
        std::string bytes = read_file(sample(file));
        inflict(bytes);
        write_file(raw, bytes);
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const conversion_run run = convert(raw, folder.inq_path() / "out.tif");
        EXPECT_EQ(testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr(), "");
        EXPECT_TRUE(run.code != eds_ok && run.code != eds_file_not_found) << run.code;
        EXPECT_TRUE(!run.reason.empty() && run.reason.find("cannot") == std::string::npos) << run.reason;
        EXPECT_EQ(list_folder(folder.inq_path()), std::vector<std::string>{"damaged.cr2"});
    }
}

// Other threads may still be developing what was decoded before.
TEST(damaged_input, leaves_the_mosaic_where_it_is) {
    std::string bytes = read_file(sample("5d2_1comp.cr2"));
    cut_off(100)(bytes);
    sdk_open::raw_decoder decoder(std::as_bytes(std::span(bytes)));
    EXPECT_THROW(decoder.decode([](unsigned) {}), sdk_open::failure);
    EXPECT_NE(decoder.inq_mosaic().samples.data(), nullptr);
}

// Metadata is no reason to refuse a picture. Bytes in front of the preview of a .cr2 are struck at random,
// but not those that place the pixel data; whether the picture is still taken for one is up to what was
// struck.
TEST(damaged_input, damaged_metadata_harm_nothing) {
    const scratch_folder folder;
    const auto raw = folder.inq_path() / "damaged.cr2";
    const std::string intact = read_file(sample("5d2_1comp.cr2"));
    int n_converted = 0;
    std::minstd_rand random(1);
    for (int round = 0; round < 60; ++round) {
        std::string bytes = intact;
        for (int strike = 0; strike < 8; ++strike)
            bytes[16 + random() % 700] = static_cast<char>(random() % 4 == 0 ? 0xff : random() % 256);
        write_file(raw, bytes);
        const conversion_run run = convert(raw, folder.inq_path() / "out.tif");
        n_converted += run.code == eds_ok ? 1 : 0;
        EXPECT_EQ(run.code == eds_ok, run.reason.empty());
    }
    EXPECT_GT(n_converted, 20);
}

} // namespace
