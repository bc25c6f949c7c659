#include "tests/cli/program_fixture.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace fs = std::filesystem;

namespace {

using raw_to_tiff_test = program_fixture;

TEST_F(raw_to_tiff_test, answers_questions) {
    const program_run_t help = run({"--help"});
    EXPECT_EQ(help.exit_code, 0);
    EXPECT_NE(help.output.find("Usage: raw-to-tiff"), std::string::npos) << help.output;
    const program_run_t version = run({"--version"});
    EXPECT_EQ(version.exit_code, 0);
    EXPECT_EQ(version.output, "raw-to-tiff " PROGRAM_VERSION "\n");
}

TEST_F(raw_to_tiff_test, converts_whatever_the_names) {
    const std::string raw = path_of("Gr\xC3\xBC\xC3\x9F"
                                    "e \xE6\x97\xA5 \xF0\x9F\x93\xB7.CR2");
    const std::string tiff = path_of("\xD1\x82 \xF0\x9F\x93\xB7 2.tif");
    fs::rename(m_raw, raw);
    fs::rename(m_tiff, tiff);
    const program_run_t program = run({raw, tiff});
    EXPECT_EQ(program.exit_code, 0);
    EXPECT_EQ(program.output + program.errors, "");
    EXPECT_TRUE(read_file(tiff).starts_with(std::string("II*\0", 4)));
    EXPECT_EQ(list_folder(m_temporary), words_t());
}

TEST_F(raw_to_tiff_test, refuses_wrong_usage) {
    const std::string tiff = path_of("new.tif");
    const struct {
        words_t arguments;
        const char* reason;
    } rows[] = {
        {{m_raw}, "TIFF is required"},
        {{m_raw, tiff, "more"}, "more"},
        {{m_raw, tiff, "--wrong"}, "--wrong"},
        {{"", tiff}, "RAW: the name is empty"},
        {{m_raw, ""}, "TIFF: the name is empty"},
    };
    for (const auto& row : rows)
        expect_failure(row.arguments, 2, "", row.reason);
}

TEST_F(raw_to_tiff_test, says_what_is_wrong_with_a_file) {
    write_file(path_of("empty.cr2"), "");
    write_file(path_of("text.crw"), "Dear diary, today I was mistaken for a picture.\n");
    write_file(path_of("short.cr2"), read_file(m_raw).substr(0, fs::file_size(m_raw) / 2));
    write_file(path_of("notes.txt"), "none");
    fs::create_directory(path_of("folder.cr2"));
    const struct {
        std::string raw;
        std::string tiff;
        int exit_code;
        const char* reason;
    } rows[] = {
        {path_of("none.txt"), m_tiff, 10, "no such file"},
        {path_of("none/a.cr2"), m_tiff, 10, "no such file"},
        {path_of("notes.txt"), m_tiff, 11, "not a .cr2 or .crw file"},
        {path_of("folder.cr2"), m_tiff, 11, "it is a folder"},
        {path_of("empty.cr2"), m_tiff, 11, "the file is empty"},
        {path_of("text.crw"), m_tiff, 11, "no Canon raw picture in it"},
        {path_of("short.cr2"), m_tiff, 11, "end early"},
        {m_raw, path_of("folder.cr2/"), 11, "Is a directory"},
        {m_raw, path_of("none/new.tif"), 11, "none/new.tif: No such file or directory"},
    };
    for (const auto& row : rows)
        expect_failure({row.raw, row.tiff}, row.exit_code, row.raw + ": ", row.reason);
}

} // namespace
