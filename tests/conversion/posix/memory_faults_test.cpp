#include "conversion/convert_raw_to_tiff.h"
#include "conversion/edsdk.h"
#include "sdk/open/identifying/own_decoder_libraw.h"
#include "sdk/open/output_options.h"
#include "tests/support/files_fixture.h"
#include "tests/support/temporary_folder_setting.h"

#include <atomic>
#include <cstdlib>
#include <iostream>

// What the C library's own functions are called beneath their usual names.
extern "C" {
void* __libc_malloc(std::size_t size) noexcept;
void* __libc_calloc(std::size_t count, std::size_t size) noexcept;
void* __libc_realloc(void* block, std::size_t size) noexcept;
void* __libc_memalign(std::size_t alignment, std::size_t size) noexcept;
}

namespace {

struct fault_t {
    int n = 0; // the request for memory that finds none, counted from 1; 0: none
    bool lasts = false;
};

constexpr std::size_t most_added_by_new = 64; // bytes

std::atomic<bool> is_at_work = false;
std::atomic<int> n_so_far = 0;
std::atomic<int> n_of_libraw = 0; // which request was for LibRaw's object
fault_t the_fault;

// Also of the threads that the code under test starts.
bool strikes(std::size_t size) noexcept {
    if (!is_at_work)
        return false;
    const int n = ++n_so_far;
    if (size - sizeof(sdk_open::own_decoder_libraw) <= most_added_by_new)
        n_of_libraw = n;
    return n == the_fault.n || (the_fault.lasts && n > the_fault.n);
}

void* nothing() noexcept {
    errno = ENOMEM;
    return nullptr;
}

} // namespace

// The functions that LibRaw, libtiff, Little CMS, the C++ library and we ourselves call.
extern "C" {

[[gnu::visibility("default")]] void* malloc(std::size_t size) noexcept {
    return strikes(size) ? nothing() : __libc_malloc(size);
}

[[gnu::visibility("default")]] void* calloc(std::size_t count, std::size_t size) noexcept {
    return strikes(count * size) ? nothing() : __libc_calloc(count, size);
}

[[gnu::visibility("default")]] void* realloc(void* block, std::size_t size) noexcept {
    return strikes(size) ? nothing() : __libc_realloc(block, size);
}

[[gnu::visibility("default")]] void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    return strikes(size) ? nothing() : __libc_memalign(alignment, size);
}

[[gnu::visibility("default")]] int posix_memalign(void** block, std::size_t alignment,
                                                  std::size_t size) noexcept {
    *block = strikes(size) ? nothing() : __libc_memalign(alignment, size);
    return *block == nullptr ? ENOMEM : 0;
}
}

namespace {

class memory_faults_test : public files_fixture {
protected:
    memory_faults_test() { make_folder("tmp"); }
    ~memory_faults_test() override { sdk_open::set_compression(sdk_open::compression_t::none); }

    void prepare(const char* raw, sdk_open::compression_t compression) {
        sdk_open::set_compression(compression);
        write("raw.cr2", read_file(std::filesystem::path(PROJECT_FOLDER) / raw));
        for (int i = 0; i < 2; ++i) // what is set up once is not asked for any more
            ASSERT_EQ(convert({}), 0);
        m_whole = read("out.tif").value();
    }

    [[nodiscard]] int convert(const fault_t& fault) const {
        write("out.tif", "older");
        const ZFileLocation raw = file("raw.cr2");
        const ZFileLocation tiff = file("out.tif");
        the_fault = fault;
        n_so_far = 0;
        is_at_work = true;
        const int result = convert_raw_to_tiff(raw, tiff);
        is_at_work = false;
        return result;
    }

    void expect_sound_end(const fault_t& fault) const {
        SCOPED_TRACE(std::to_string(fault.n) + (fault.lasts ? " and so on" : ""));
        const int result = convert(fault);
        EXPECT_TRUE(result == 0 || result == 11) << result;
        EXPECT_TRUE(read("out.tif") == (result == 0 ? m_whole : "older")) << inq_sdk_failure_reason();
        // Before the SDK there is no reason. And where LibRaw identifies, it takes some shortages for damage.
        const std::string_view reason = inq_sdk_failure_reason();
        EXPECT_TRUE(reason.empty() || (result == 11 && (reason == "not enough memory" ||
                                                        reason.starts_with("the file ends early"))))
            << reason;
        EXPECT_EQ(list(), "out.tif raw.cr2 tmp ");
        EXPECT_TRUE(std::filesystem::is_empty(path("tmp")));
    }

    const temporary_folder_setting m_setting{path("tmp")};
    std::string m_whole;
};

// But for the first request of LibRaw's constructor, which it does not check. The code under test makes sure
// beforehand that there is memory for it.
TEST_F(memory_faults_test, leave_the_older_file_or_the_whole_new_one) {
    const std::pair<const char*, sdk_open::compression_t> rows[] = {
        {"samples/synthetic/5d2_1comp.cr2", sdk_open::compression_t::none},
        {"samples/synthetic/10d_12bit_low_bits.crw", sdk_open::compression_t::lzw},
        {"fuzz/corpus/cr2_file/reduced_columns.cr2", sdk_open::compression_t::none},
        {"fuzz/corpus/crw_file/four_colours.crw", sdk_open::compression_t::none},
    };
    for (const auto& [raw, compression] : rows) {
        prepare(raw, compression);
        SCOPED_TRACE(raw);
        const int n_requests = n_so_far;
        const int n_unchecked = n_of_libraw + 1;
        ASSERT_TRUE(n_requests > 100 && n_unchecked > 1) << "too few to mean something";
        for (const bool lasts : {false, true})
            for (int n = 1; n <= n_requests; ++n)
                if (n != n_unchecked)
                    expect_sound_end({n, lasts});
        std::cout << 2 * (n_requests - 1) << " shortages of memory\n";
    }
}

} // namespace
