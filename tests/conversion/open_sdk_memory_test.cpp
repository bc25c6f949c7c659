#include "classlib/files/ZFileLocation.h"
#include "conversion/convert_raw_to_tiff.h"
#include "tests/support/allocation_meter.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace fs = std::filesystem;

namespace {

// The whole conversion with the open SDK: memory runs out wherever C++ asks for it, also inside the decoder's
// library. What the libraries take from malloc is not covered.
TEST(open_sdk_memory_test, fails_cleanly_wherever_memory_runs_out) {
    const scratch_folder scratch;
    const fs::path raw = fs::path(SAMPLE_FOLDER) / "5d2_1comp.cr2";
    const fs::path tiff = scratch.inq_path() / "a.tif";
    const ZFileLocation raw_location(raw.string<utf16_t>().c_str(), false);
    const ZFileLocation tiff_location(tiff.string<utf16_t>().c_str(), false);
    bool has_failed = true;
    for (int n = 1; has_failed; ++n) {
        SCOPED_TRACE("allocation " + std::to_string(n));
        write_file(tiff, "older");
        allocation_meter::section memory(n);
        const int result = convert_raw_to_tiff(raw_location, tiff_location);
        memory.stop();

        has_failed = memory.inq_failed();
        EXPECT_EQ(result, has_failed ? 11 : 0);
        EXPECT_EQ(memory.inq_held(), 0);
        EXPECT_EQ(read_file(tiff) == "older", has_failed);
        EXPECT_EQ(list_folder(scratch.inq_path()).size(), 1U);
        EXPECT_TRUE(has_failed || n > 50) << "too few to mean something";
    }
}

} // namespace
