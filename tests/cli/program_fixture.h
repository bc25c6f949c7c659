#pragma once

#include "tests/support/scratch_folder.h"
#include "tests/support/temporary_folder_setting.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

using words_t = std::vector<std::string>;

// How a program ended, and what it wrote on standard output and standard error.
struct program_run_t {
    int exit_code; // -1 when a signal ended it
    std::string output;
    std::string errors;
};

// Runs the program in a folder that holds a sound raw file, an older target and an empty temporary folder.
class program_fixture : public testing::Test {
protected:
    program_fixture();

    // The prefix is what a shell is told before the program: limits, or a program to run it through.
    [[nodiscard]] program_run_t run(const words_t& arguments, const std::string& prefix = "") const;

    // The run must fail with the exit code and one line that begins with what is to blame and says why;
    // nothing may have changed in the folder.
    void expect_failure(const words_t& arguments, int exit_code, const std::string& blamed,
                        std::string_view reason, const std::string& prefix = "") const;

    [[nodiscard]] std::string path_of(const std::string& name) const { return (m_folder / name).string(); }

    const scratch_folder m_scratch;
    const std::filesystem::path m_folder = m_scratch.inq_path() / "files";
    const std::filesystem::path m_temporary = m_folder / "tmp";
    const std::string m_raw = path_of("sound.cr2");
    const std::string m_tiff = path_of("older.tif");

private:
    const temporary_folder_setting m_setting{m_temporary};
};
