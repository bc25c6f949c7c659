#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <dlfcn.h>
#include <filesystem>
#include <memory>
#include <string>

namespace fs = std::filesystem;

namespace {

// A location as a host knows it that has nothing but the library's file.
struct location_t {
    const char16_t* volume;
    const char16_t* folder;
    const char16_t* name;
};

using convert_t = int(const location_t& raw, const location_t& tiff);

TEST(shared_library_test, converts_for_a_host_that_loads_it) {
    // The thread runtime that the decoder brings along forgets a few bytes when it is unloaded, so it stays.
    ::dlopen("libgomp.so.1", RTLD_NOW | RTLD_NODELETE);
    const std::unique_ptr<void, int (*)(void*)> library(::dlopen(SHARED_LIBRARY, RTLD_NOW | RTLD_LOCAL),
                                                        ::dlclose);
    ASSERT_NE(library, nullptr) << ::dlerror();
    auto* const convert = reinterpret_cast<convert_t*>(::dlsym(library.get(), "convert_raw_to_tiff"));
    ASSERT_NE(convert, nullptr) << ::dlerror();

    const scratch_folder scratch;
    const fs::path& path = scratch.inq_path();
    fs::copy_file(fs::path(SAMPLE_FOLDER) / "5d2_1comp.cr2", path / u8"\U0001F4F7 1.CR2");
    std::u16string folder = path.u16string() + u'/';
    std::ranges::replace(folder, u'/', u'\\');
    const std::u16string tiff_path = folder + u"\u0442 2.tif";

    const location_t raw{nullptr, folder.c_str(), u"\U0001F4F7 1.CR2"};
    const location_t tiff{u"", nullptr, tiff_path.c_str()};
    EXPECT_EQ(convert(raw, tiff), 0);
    EXPECT_TRUE(read_file(path / u8"\u0442 2.tif").starts_with(std::string("II*\0", 4)));

    const location_t nothing{nullptr, nullptr, nullptr};
    EXPECT_EQ(convert(nothing, tiff), 10);
    EXPECT_EQ(convert(raw, nothing), 11);
}

} // namespace
