#pragma once

#include "tests/support/scratch_folder.h"
#include "tests/support/temporary_folder_setting.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>
#include <sys/wait.h>
#include <vector>

using words_t = std::vector<std::string>;

// Put before a command, it lets workers meet the fates that names of files tell. A name to preload ends at a
// blank.
constexpr auto preload = "ASAN_OPTIONS=detect_leaks=0:handle_segv=0:verify_asan_link_order=0 "
                         "LD_LIBRARY_PATH='" FATEFUL_CALLS_FOLDER "' LD_PRELOAD=" FATEFUL_CALLS " ";

// Runs the program as a user does, from a shell, with an empty temporary folder.
class program_fixture : public testing::Test {
protected:
    program_fixture() { std::filesystem::create_directories(m_temporary); }

    [[nodiscard]] std::string path_of(const std::string& name) const { return m_folder / name; }

    // The TIFFs and begun files below the current folder, in order, with a blank after each.
    [[nodiscard]] static std::string list_outputs() {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(
                 ".", std::filesystem::directory_options::skip_permission_denied))
            if (const auto ending = entry.path().extension(); ending == ".tif" || ending == ".part")
                names.insert(entry.path().lexically_relative("."));
        std::string list;
        for (const std::string& name : names)
            list += name + ' ';
        return list;
    }

    [[nodiscard]] static std::string command_of(const words_t& arguments) {
        std::string command = "'" PROGRAM "'";
        for (const std::string& argument : arguments)
            command += " '" + argument + "'";
        return command;
    }

    // Answers the exit code, -1 when a signal ended the program. The shell gets the prefix in front of it and
    // the suffix after it.
    int run(const words_t& arguments, const std::string& prefix = "", const std::string& suffix = "") {
        const auto output = m_scratch.inq_path() / "output";
        const auto errors = m_scratch.inq_path() / "errors";
        const std::string streams = " >" + output.string() + " 2>" + errors.string() + ' ';
        const int status = std::system((prefix + ' ' + command_of(arguments) + streams + suffix).c_str());
        m_output = read_file(output);
        m_errors = read_file(errors);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    const scratch_folder m_scratch;
    const std::filesystem::path m_folder = m_scratch.inq_path() / "Gr\u00FC\u00DFe \u65E5 \U0001F4F7";
    const std::filesystem::path m_temporary = m_folder / "tmp";
    const temporary_folder_setting m_setting{m_temporary};
    std::string m_output;
    std::string m_errors;
};

// Runs it in a folder with another one, "in", for the raw files.
class folder_fixture : public program_fixture {
protected:
    folder_fixture() {
        std::filesystem::create_directory(m_folder / "in");
        std::filesystem::current_path(m_folder);
    }
    ~folder_fixture() override { std::filesystem::current_path("/"); }
};
