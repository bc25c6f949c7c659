#pragma once

#include "tests/cli/program_run.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/temporary_folder_setting.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

using words_t = std::vector<std::string>;

// Runs the program with an empty temporary folder, in a folder that holds an older target and a sound raw
// file.
class program_fixture : public testing::Test {
protected:
    program_fixture();

    [[nodiscard]] static program_run_t run(const words_t& arguments, const words_t& wrapper = {});

    // Converts, which must fail with an exit code and one line that names the raw file, as it was given, and
    // says why; nothing may have changed in any folder. The program is run through the wrapper, if there is
    // one.
    void expect_failure(const std::string& raw, const std::string& tiff, int exit_code,
                        std::string_view reason, const words_t& wrapper = {}) const;

    [[nodiscard]] std::string path_of(const std::string& name) const { return (m_folder / name).string(); }

    // The picture of a real camera that the tests were given; empty when they were given none.
    [[nodiscard]] static std::filesystem::path inq_real_picture();

    const scratch_folder m_scratch;
    const std::filesystem::path m_temporary = m_scratch.inq_path() / "tmp";
    const std::filesystem::path m_folder = m_scratch.inq_path() / "files";
    const std::string m_raw = path_of("sound.cr2");
    const std::string m_tiff = path_of("older.tif");

private:
    const temporary_folder_setting m_setting{m_temporary};
};
