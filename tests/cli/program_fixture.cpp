#include "tests/cli/program_fixture.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <utility>

namespace fs = std::filesystem;

namespace {

const std::string older = "an older target";

// Every file below a folder with its size, folders with none.
std::map<fs::path, std::uintmax_t> entries_of(const fs::path& folder) {
    std::map<fs::path, std::uintmax_t> entries;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder))
        entries[entry.path()] = entry.is_regular_file() ? entry.file_size() : 0;
    return entries;
}

} // namespace

program_fixture::program_fixture() {
    fs::create_directory(m_temporary);
    fs::create_directory(m_folder);
    fs::copy_file(fs::path(SAMPLE_FOLDER) / "5d2_1comp.cr2", m_raw);
    write_file(m_tiff, older);
}

program_run_t program_fixture::run(const words_t& arguments, const words_t& wrapper) {
    words_t command = wrapper;
    command.push_back(PROGRAM);
    command.insert(command.end(), arguments.begin(), arguments.end());
    return run_program(std::move(command));
}

void program_fixture::expect_failure(const std::string& raw, const std::string& tiff, int exit_code,
                                     std::string_view reason, const words_t& wrapper) const {
    SCOPED_TRACE(raw + " to " + tiff);
    const auto before = entries_of(m_scratch.inq_path());
    const program_run_t program = run({raw, tiff}, wrapper);
    EXPECT_EQ(program.exit_code, exit_code);
    EXPECT_EQ(program.output, "");
    const std::string start = "raw-to-tiff: " + raw + ": ";
    EXPECT_TRUE(program.errors.starts_with(start)) << program.errors;
    EXPECT_NE(program.errors.find(reason, start.size()), std::string::npos) << program.errors;
    EXPECT_EQ(std::ranges::count(program.errors, '\n'), 1) << program.errors;
    EXPECT_TRUE(program.errors.ends_with('\n')) << program.errors;
    EXPECT_EQ(entries_of(m_scratch.inq_path()), before);
    EXPECT_TRUE(read_file(m_tiff) == older);
}

fs::path program_fixture::inq_real_picture() {
    const char* const given = std::getenv("RAW_TO_TIFF_SAMPLE");
    const fs::path picture = given != nullptr ? given : "/usr/share/doc/rawtran/IMG_5952.CR2";
    return fs::exists(picture) ? picture : fs::path();
}
