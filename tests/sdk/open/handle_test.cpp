#include "tests/sdk/open/conversion_run.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

namespace {

constexpr auto existing = eds_disposition_t::open_existing;
constexpr auto tiff_16_bit = eds_target_t::tiff_16_bit;

TEST(handles, misuse_is_an_error_and_nothing_else) {
    const scratch_folder folder;
    const auto raw = sample("5d2_1comp.cr2");
    __EdsObject* input = nullptr;
    __EdsObject* image = nullptr;
    __EdsObject* output = nullptr;
    EXPECT_NE(open_stream(raw, existing, &input), eds_ok) << "not initialised";
    EXPECT_EQ(EdsInitializeSDK(), eds_ok);
    EXPECT_NE(EdsCreateFileStream(nullptr, existing, eds_access_t::read_write, &input), eds_ok);
    EXPECT_NE(open_stream(raw, existing, nullptr), eds_ok);
    ASSERT_EQ(open_stream(raw, existing, &input), eds_ok);
    ASSERT_EQ(EdsCreateImageRef(input, &image), eds_ok);
    ASSERT_EQ(open_stream(folder.inq_path() / "a.tif", eds_disposition_t::create_always, &output), eds_ok);
    EXPECT_NE(EdsCreateImageRef(output, &image), eds_ok) << "a stream to write";
    EXPECT_NE(EdsSaveImage(nullptr, tiff_16_bit, {}, output), eds_ok);
    EXPECT_NE(EdsSaveImage(image, tiff_16_bit, {}, input), eds_ok) << "a stream to read";
    EXPECT_NE(EdsSaveImage(input, tiff_16_bit, {}, output), eds_ok) << "no image";
    EXPECT_EQ(EdsRelease(input), eds_ok);
    EXPECT_NE(EdsRelease(input), eds_ok) << "released twice";
    EXPECT_EQ(EdsRelease(nullptr), eds_ok);
    EXPECT_EQ(EdsSaveImage(image, tiff_16_bit, {}, output), eds_ok) << "needs its stream no more";
    EXPECT_EQ(EdsTerminateSDK(), eds_ok);
    EXPECT_NE(EdsRelease(image), eds_ok) << "released with the SDK";
}

// A file that is not found is no last word: the caller may come back with a copy of it.
TEST(handles, first_failure_gives_the_reason) {
    __EdsObject* stream = nullptr;
    EXPECT_EQ(EdsInitializeSDK(), eds_ok);
    EXPECT_EQ(inq_sdk_failure_reason(), "") << "whatever happened before";
    EXPECT_EQ(open_stream("missing.cr2", existing, &stream), eds_file_not_found);
    EXPECT_NE(open_stream(SAMPLE_FOLDER, existing, &stream), eds_ok);
    EXPECT_NE(open_stream("missing/out.tif", eds_disposition_t::create_always, &stream), eds_ok);
    EXPECT_EQ(EdsTerminateSDK(), eds_ok);
    EXPECT_EQ(inq_sdk_failure_reason(), "it is a folder");
}

} // namespace
