#include "tests/support/allocation_meter.h"
#include "tests/support/files_fixture.h"

#include <array>
#include <dlfcn.h>

namespace {

// A location as a host knows it that has nothing but the library's file: volume, folder and name.
using location_t = std::array<const char16_t*, 3>;
using convert_t = int(const location_t& raw, const location_t& tiff);
using shared_library_test = files_fixture;

// With the open SDK in it. Memory runs out wherever C++ asks for it, but not what is taken from malloc.
TEST_F(shared_library_test, converts_for_a_host_that_loads_it_or_fails_cleanly_without_memory) {
    void* const library = ::dlopen(SHARED_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << ::dlerror();
    auto* const convert = reinterpret_cast<convert_t*>(::dlsym(library, "convert_raw_to_tiff"));

    std::filesystem::copy_file(SAMPLE_FILE, path("1.CR2"));
    const std::u16string folder = path("").u16string();
    const location_t raw{nullptr, folder.c_str(), u"1.CR2"};
    const location_t tiff{u"", folder.c_str(), u"\u0442 2.tif"};

    bool has_failed = true;
    for (int n = 1; has_failed; ++n) {
        write("\u0442 2.tif", "older");
        allocation_meter::section memory(n);
        const int result = convert(raw, tiff);
        memory.stop();

        has_failed = memory.inq_failed();
        const bool is_converted = result == 0; // which needs no second thread
        EXPECT_TRUE(is_converted || (has_failed && result == 11)) << n;
        EXPECT_EQ(memory.inq_held(), 0) << n;
        EXPECT_TRUE(read("\u0442 2.tif")->starts_with(is_converted ? "II*" : "older")) << n;
        EXPECT_EQ(list(), "1.CR2 \u0442 2.tif ") << n;
        EXPECT_TRUE(has_failed || n > 50) << "too few to mean something";
    }
}

} // namespace
