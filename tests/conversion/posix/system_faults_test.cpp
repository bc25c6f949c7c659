#include "conversion/convert_raw_to_tiff.h"
#include "conversion/edsdk.h"
#include "sdk/open/output_options.h"
#include "tests/conversion/posix/faulty_system.h"
#include "tests/support/files_fixture.h"
#include "tests/support/temporary_folder_setting.h"

#include <cerrno>
#include <iostream>
#include <system_error>

namespace {

using faulty_system::fault_t;
using faulty_system::first_open_t;
using faulty_system::naming_t;
using sdk_open::expected_target_t;

constexpr std::string_view new_file = "of a new file";

std::ptrdiff_t count_open_files() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

// How a conversion goes about it. Where it expects no target, there is none.
struct way_t {
    faulty_system::setting_t setting;
    expected_target_t expected = {};
};

// A raw file and maybe an older target in one folder, an empty temporary folder in another.
class system_faults_test : public files_fixture {
protected:
    system_faults_test() {
        std::filesystem::copy_file(SAMPLE_FILE, path("raw.cr2"));
        make_folder("tmp");
        EXPECT_EQ(convert_raw_to_tiff(m_raw, file("whole.tif")), 0);
        m_whole = read("whole.tif");
        std::filesystem::remove(path("whole.tif"));
        ::setenv("RAW_TO_TIFF_THREADS", "1", 1);
    }
    ~system_faults_test() override {
        ::unsetenv("RAW_TO_TIFF_THREADS");
        sdk_open::set_expected_target({});
    }

    void prepare(const expected_target_t& expected) {
        sdk_open::set_expected_target(expected);
        std::filesystem::remove(path("out.tif"));
        if (!expected)
            write("out.tif", "older");
        m_older = read("out.tif");
    }

    // Converts with a fault; false where there was none so late.
    bool convert_with(const fault_t& fault, const way_t& way) {
        prepare(way.expected);
        const auto n_open_files = count_open_files();
        int result = -1;
        std::string struck;
        {
            const faulty_system::section section(fault, way.setting);
            result = convert_raw_to_tiff(m_raw, m_tiff);
            struck = section.inq_struck();
        }
        SCOPED_TRACE(struck + ' ' + std::to_string(fault.n) + ": " +
                     std::generic_category().message(fault.error_number) + (fault.lasts ? " and so on" : ""));
        check_result(result, fault, struck, way.setting.first_open);
        check_folders(struck);
        EXPECT_EQ(count_open_files(), n_open_files);
        return !struck.empty();
    }

    void check_result(int result, const fault_t& fault, std::string_view struck,
                      first_open_t first_open) const {
        const bool must_be_survived = fault.error_number == EINTR || fault.error_number == 0 ||
                                      struck == "madvise" || struck == "flock" || struck == "fcntl" ||
                                      struck == "link";
        if (result == 0 || (must_be_survived && !fault.lasts)) {
            EXPECT_EQ(result, 0);
            EXPECT_TRUE(must_be_survived || !(struck.ends_with(new_file) || struck == "fsync"))
                << "what was written may be lost";
            EXPECT_TRUE(read("out.tif") == m_whole);
            return;
        }
        EXPECT_TRUE(result == 11 || (result == 10 && struck == "stat")) << result;
        const bool is_name_at_risk = struck == "fsync"; // of the folder, when all is done
        EXPECT_TRUE(read("out.tif") == (is_name_at_risk ? m_whole : m_older));
        // The copy goes on from a file that was not found, which is the reason that stays.
        const std::string cause = std::generic_category().message(fault.error_number);
        const bool is_named = inq_sdk_failure_reason().find(cause) != std::string_view::npos;
        EXPECT_TRUE(is_named || result == 10 || first_open == first_open_t::finds_no_file)
            << inq_sdk_failure_reason();
    }

    // A copy that could not be removed is all that may be left.
    void check_folders(std::string_view struck) const {
        EXPECT_EQ(list(), read("out.tif") ? "out.tif raw.cr2 tmp " : "raw.cr2 tmp ");
        for (const auto& entry : std::filesystem::directory_iterator(path("tmp"))) {
            EXPECT_EQ(struck, "unlink") << entry.path();
            std::filesystem::remove(entry.path());
        }
    }

    const ZFileLocation m_raw = file("raw.cr2");
    const ZFileLocation m_tiff = file("out.tif");
    const temporary_folder_setting m_setting{path("tmp")};
    std::optional<std::string> m_whole;
    std::optional<std::string> m_older;
};

TEST_F(system_faults_test, leave_the_older_file_or_the_whole_new_one) {
    const fault_t faults[] = {{1, 0},      {1, EINTR},  {1, EIO},       {1, ENOSPC},
                              {1, EACCES}, {1, EMFILE}, {1, EIO, true}, {1, ENOSPC, true}};
    const expected_target_t nothing{std::in_place};
    const way_t ways[] = {{},
                          {{first_open_t::finds_no_file}},
                          {{}, nothing},
                          {{.naming = naming_t::by_link}, nothing},
                          {{.naming = naming_t::unguarded}, nothing}};
    int n_points = 0;
    for (const way_t& way : ways)
        for (fault_t fault : faults)
            while (convert_with(fault, way)) {
                ++fault.n;
                ++n_points;
            }
    EXPECT_GT(n_points, 1500) << "too few to mean something";
    std::cout << n_points << " faults of the system\n";
}

} // namespace
