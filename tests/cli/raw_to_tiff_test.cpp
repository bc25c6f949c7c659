#include "tests/cli/program_fixture.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <string>

namespace fs = std::filesystem;

namespace {

using raw_to_tiff_test = program_fixture;

TEST_F(raw_to_tiff_test, answers_questions) {
    const program_run_t help = run({"--help"});
    EXPECT_EQ(help.exit_code, 0);
    EXPECT_EQ(help.errors, "");
    for (const char* word : {"Usage: raw-to-tiff", "RAW", "TIFF", "--version", "Exit status"})
        EXPECT_NE(help.output.find(word), std::string::npos) << word;

    const program_run_t version = run({"--version"});
    EXPECT_EQ(version.exit_code, 0);
    EXPECT_EQ(version.output, "raw-to-tiff " PROGRAM_VERSION "\n");
    EXPECT_EQ(version.errors, "");
}

TEST_F(raw_to_tiff_test, refuses_wrong_usage) {
    const struct {
        words_t arguments;
        const char* reason;
    } rows[] = {
        {{}, "RAW is required"},
        {{m_raw}, "TIFF is required"},
        {{m_raw, path_of("new.tif"), "more"}, "more"},
        {{m_raw, path_of("new.tif"), "--wrong"}, "--wrong"},
        {{"", path_of("new.tif")}, "RAW: the name is empty"},
        {{m_raw, ""}, "TIFF: the name is empty"},
    };
    const auto names = list_folder(m_folder);
    for (const auto& row : rows) {
        const program_run_t program = run(row.arguments);
        EXPECT_EQ(program.exit_code, 2) << row.reason;
        EXPECT_EQ(program.output, "");
        EXPECT_TRUE(program.errors.starts_with("raw-to-tiff: ")) << program.errors;
        EXPECT_NE(program.errors.find(row.reason), std::string::npos) << program.errors;
        EXPECT_EQ(program.errors.find('\n'), program.errors.size() - 1) << program.errors;
        EXPECT_EQ(list_folder(m_folder), names);
    }
}

TEST_F(raw_to_tiff_test, says_what_is_wrong_with_a_file) {
    write_file(path_of("empty.cr2"), "");
    write_file(path_of("text.crw"), "Dear diary, today I was mistaken for a picture.\n");
    write_file(path_of("notes.txt"), "none");
    fs::create_directory(path_of("folder.cr2"));
    const struct {
        std::string raw;
        std::string tiff;
        int exit_code;
        const char* reason;
    } rows[] = {
        {path_of("none.cr2"), m_tiff, 10, "no such file"},
        {path_of("none.txt"), m_tiff, 10, "no such file"},
        {path_of("none/a.cr2"), m_tiff, 10, "no such file"},
        {path_of("notes.txt"), m_tiff, 11, "not a .cr2 or .crw file"},
        {path_of("folder.cr2"), m_tiff, 11, "it is a folder"},
        {path_of("empty.cr2"), m_tiff, 11, "the file is empty"},
        {path_of("text.crw"), m_tiff, 11, "no Canon raw picture in it"},
        {m_raw, path_of("folder.cr2"), 11, "folder.cr2: Is a directory"},
        {m_raw, path_of("folder.cr2/"), 11, "Is a directory"},
        {m_raw, path_of("none/new.tif"), 11, "none/new.tif: No such file or directory"},
        {m_raw, path_of("notes.txt/new.tif"), 11, "notes.txt/new.tif: Not a directory"},
    };
    for (const auto& row : rows)
        expect_failure(row.raw, row.tiff, row.exit_code, row.reason);
}

class real_picture_test : public program_fixture {
protected:
    void SetUp() override {
        if (inq_real_picture().empty())
            GTEST_SKIP() << "the real picture is not installed";
    }
};

TEST_F(real_picture_test, converts_whatever_its_name) {
    const std::string raw = path_of("Gr\xC3\xBC\xC3\x9F"
                                    "e \xE6\x97\xA5 \xF0\x9F\x93\xB7.CR2");
    const std::string tiff = path_of("\xD1\x82 \xF0\x9F\x93\xB7 2.tif");
    fs::copy_file(inq_real_picture(), raw);
    write_file(tiff, "older");
    const program_run_t program = run({raw, tiff});
    EXPECT_EQ(program.exit_code, 0);
    EXPECT_EQ(program.output + program.errors, "");
    EXPECT_TRUE(read_file(tiff).starts_with(std::string("II*\0", 4)));
    EXPECT_GT(fs::file_size(tiff), 3504U * 2336 * 6);
    EXPECT_EQ(list_folder(m_temporary), words_t());
}

TEST_F(real_picture_test, is_refused_when_damaged) {
    const std::string bytes = read_file(inq_real_picture());
    write_file(path_of("short.cr2"), bytes.substr(0, bytes.size() / 2));
    expect_failure(path_of("short.cr2"), m_tiff, 11, "ends early");

    // The codes of the lossless JPEG: 16 counts behind the marker, the length and the table's number.
    const std::size_t table = bytes.rfind("\xFF\xD8\xFF\xC4");
    ASSERT_NE(table, std::string::npos);
    std::string damaged = bytes;
    write_file(path_of("codes.cr2"), damaged.replace(table + 7, 16, 16, '\xFF'));
    expect_failure(path_of("codes.cr2"), m_tiff, 11, "code table");
}

} // namespace
