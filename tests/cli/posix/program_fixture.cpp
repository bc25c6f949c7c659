#include "tests/cli/program_fixture.h"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <sys/wait.h>

namespace fs = std::filesystem;

namespace {

const std::string older = "an older target";

std::set<fs::path> entries_below(const fs::path& folder) {
    const fs::recursive_directory_iterator entries(folder);
    return {begin(entries), end(entries)};
}

} // namespace

program_fixture::program_fixture() {
    fs::create_directories(m_temporary);
    fs::copy_file(fs::path(SAMPLE_FOLDER) / "5d2_1comp.cr2", m_raw);
    write_file(m_tiff, older);
}

program_run_t program_fixture::run(const words_t& arguments, const std::string& prefix) const {
    const fs::path output = m_scratch.inq_path() / "output";
    const fs::path errors = m_scratch.inq_path() / "errors";
    std::string command = prefix + " '" PROGRAM "'";
    for (const std::string& argument : arguments)
        command += " '" + argument + "'";
    const int status = std::system((command + " >" + output.string() + " 2>" + errors.string()).c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, read_file(output), read_file(errors)};
}

void program_fixture::expect_failure(const words_t& arguments, int exit_code, const std::string& blamed,
                                     std::string_view reason, const std::string& prefix) const {
    SCOPED_TRACE(testing::PrintToString(arguments));
    const auto before = entries_below(m_folder);
    const program_run_t program = run(arguments, prefix);
    EXPECT_EQ(program.exit_code, exit_code);
    EXPECT_EQ(program.output, "");
    const std::string start = "raw-to-tiff: " + blamed;
    EXPECT_TRUE(program.errors.starts_with(start)) << program.errors;
    EXPECT_NE(program.errors.find(reason, start.size()), std::string::npos) << program.errors;
    EXPECT_EQ(program.errors.find('\n'), program.errors.size() - 1) << program.errors;
    EXPECT_EQ(entries_below(m_folder), before);
    EXPECT_EQ(read_file(m_tiff), older);
}
