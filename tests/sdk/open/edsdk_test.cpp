#include "sdk/open/failure.h"
#include "sdk/open/identifying/raw_decoder.h"
#include "tests/sdk/open/conversion_run.h"
#include "tests/sdk/open/samples.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <functional>
#include <span>
#include <string_view>
#include <tuple>

namespace {

// The first failure gives the reason. But a file that is not found is no last word: the caller may come back
// with a copy of it.
TEST(handles, misuse_is_an_error_and_nothing_else) {
    constexpr auto existing = eds_disposition_t::open_existing;
    const auto raw = sample("5d2_1comp.cr2");
    __EdsObject* stream = nullptr;
    EXPECT_NE(open_stream(raw, existing, &stream), eds_ok) << "not initialised";
    EXPECT_EQ(EdsInitializeSDK(), eds_ok);
    EXPECT_EQ(inq_sdk_failure_reason(), "") << "whatever happened before";
    EXPECT_EQ(open_stream("missing.cr2", existing, &stream), eds_file_not_found);
    EXPECT_NE(open_stream(SAMPLE_FOLDER, existing, &stream), eds_ok);
    EXPECT_NE(EdsCreateFileStream(nullptr, existing, eds_access_t::read_write, &stream), eds_ok);
    EXPECT_NE(open_stream(raw, existing, nullptr), eds_ok);
    ASSERT_EQ(open_stream(raw, existing, &stream), eds_ok);
    EXPECT_NE(EdsSaveImage(stream, eds_target_t::tiff_16_bit, {}, stream), eds_ok) << "no image";
    EXPECT_EQ(EdsRelease(stream), eds_ok);
    EXPECT_NE(EdsRelease(stream), eds_ok) << "released twice";
    EXPECT_EQ(EdsRelease(nullptr), eds_ok);
    EXPECT_EQ(open_stream(raw, existing, &stream), eds_ok);
    EXPECT_EQ(EdsTerminateSDK(), eds_ok);
    EXPECT_NE(EdsRelease(stream), eds_ok) << "released with the SDK";
    EXPECT_EQ(inq_sdk_failure_reason(), "it is a folder");
}

using damage = std::function<void(std::string&)>;

// Overwrites what stands at a distance after the last place of an anchor: for a marker's that is in the
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

// Replaces the resolution unit of the first directory of the .cr2 by a pointer to what is appended to the
// file.
damage append(std::string_view entry, const std::string& bytes) {
    return [=](std::string& file) {
        std::string added(entry);
        for (std::size_t shift = 0; shift < 32; shift += 8)
            added.push_back(static_cast<char>(file.size() >> shift & 0xffU));
        constexpr std::string_view resolution_unit("\x28\1\3\0\1\0\0\0", 8);
        file.replace(file.find(resolution_unit), added.size(), added);
        file += bytes;
    };
}

// A packet of another maker's notes, which may hold others.
std::string packets(std::size_t count) {
    const std::string one = std::string("STKP\0\0\0\0", 8) + std::string(40, 'x') + "\xff\xff\xff\x7f";
    std::string all;
    while (count-- > 0)
        all += one;
    return all;
}

TEST(damaged_input, is_refused_with_a_reason_before_there_is_an_output) {
    constexpr auto cr2 = "5d2_1comp.cr2";
    constexpr auto crw = "d60_12bit_table2_portrait.crw";
    constexpr std::string_view slices("\2\0\x98\0\x98\0", 6); // of the .cr2: two of 152 columns and one more
    constexpr std::string_view borders("\x30\0\x14\0\xbf\1", 6); // of the .cr2: left, top and right
    constexpr auto table = "\xff\xc4";
    constexpr auto frame = "\xff\xc3";
    constexpr auto scan = "\xff\xda";
    const std::tuple<const char*, const char*, damage> rows[] = {
        {"metadata alone", cr2, cut_off(258'000)},
        {"blanked codes", cr2, fill(190'000, '\0')},
        {"no start of image", cr2, patch("\xff\xd8", 0, "  ")},
        {"table with too many codes", cr2, patch(table, 5, "\3\3")},
        {"table without codes", cr2, patch(table, 5, std::string(16, '\0'))},
        {"table with an impossible difference", cr2, patch(table, 21, "\x1f")},
        {"table for something else", cr2, patch(table, 4, "\x13")},
        {"frame of a lossy picture", cr2, patch(frame, 1, "\xc0")},
        {"frame with impossible precision", cr2, patch(frame, 4, "\x11")},
        {"scan of a missing table", cr2, patch(scan, 6, "0")},
        {"scan with an unknown predictor", cr2, patch(scan, 7, "\x09")},
        {"slices of no width", cr2, patch(slices, 2, std::string("\0\0\xc8\1", 4))},
        {"too many slices", cr2, patch(slices, 0, "\xff\xff")},
        {"columns beyond the sensor", cr2, patch(borders, 4, "\xf4")},
        {"another maker's mark", crw, patch("HEAPCCDR", 12, "IIII")},
        {"another maker", cr2, patch({"Canon\0", 6}, 0, "Nikon")},
        {"directories within the picture", cr2, patch("\xff\xd8", 12, "II")},
        {"directory that follows itself", cr2,
         patch({"\x40\xc6\3\0\3\0\0\0", 8}, 12, std::string("\x10\0\0\0", 4))},
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
        testing::internal::CaptureStderr(); // the decoder would print there
        const std::string reason = convert(raw, folder.inq_path() / "out.tif");
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        EXPECT_TRUE(!reason.empty() && reason.find("cannot") == std::string::npos) << reason;
        EXPECT_EQ(list_folder(folder.inq_path()).size(), 1U);
    }
}

// LibRaw would call itself for each of them until the stack is full.
TEST(damaged_input, notes_of_another_maker_are_passed_over) {
    constexpr std::string_view notes("\6\x86\4\0\5\0\0\0", 8);
    const scratch_folder folder;
    const auto raw = folder.inq_path() / "in.cr2";
    const auto tiff = folder.inq_path() / "out.tif";
    std::string bytes = read_file(sample("5d2_1comp.cr2"));
    write_file(raw, bytes);
    EXPECT_EQ(convert(raw, tiff), "");
    const std::string wanted = read_file(tiff);
    append(notes, packets(100'000))(bytes);
    write_file(raw, bytes);
    EXPECT_EQ(convert(raw, tiff), "");
    EXPECT_EQ(read_file(tiff), wanted);
}

// Other threads may still be developing what was decoded before.
TEST(damaged_input, leaves_the_mosaic_where_it_is) {
    std::string bytes = read_file(sample("5d2_1comp.cr2"));
    cut_off(100)(bytes);
    sdk_open::raw_decoder decoder(std::as_bytes(std::span(bytes)));
    EXPECT_THROW(decoder.decode(1, [](unsigned) {}), sdk_open::failure);
    EXPECT_NE(decoder.inq_mosaic().samples.data(), nullptr);
}

} // namespace
