#include "tests/sdk/open/conversion_run.h"
#include "tests/sdk/open/samples.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;

enum class answer_t { not_found, other_error, opened };

answer_t answer_to(const fs::path& path) {
    __EdsObject* stream = nullptr;
    EdsInitializeSDK();
    const eds_error_t code = EdsCreateFileStream(path.c_str(), eds_disposition_t::open_existing,
                                                 eds_access_t::read_write, &stream);
    EXPECT_EQ(stream != nullptr, code == eds_ok);
    EXPECT_EQ(is_one_line(std::string(inq_sdk_failure_reason())), code != eds_ok);
    EdsTerminateSDK();
    return code == eds_ok               ? answer_t::opened
           : code == eds_file_not_found ? answer_t::not_found
                                        : answer_t::other_error;
}

TEST(InputPath, OnlyAFileOutOfReachIsNotFound) {
    const scratch_folder scratch;
    const fs::path& folder = scratch.inq_path();
    write_file(folder / "plain.cr2", "x");
    fs::create_directory(folder / "folder.cr2");
    fs::create_symlink("plain.cr2", folder / "link.cr2");
    fs::create_symlink("circle.cr2", folder / "circle.cr2");
    fs::create_symlink("nowhere", folder / "dangling.cr2");
    ASSERT_EQ(::mkfifo((folder / "pipe.cr2").c_str(), 0600), 0);
    struct row {
        fs::path path;
        answer_t answer;
    };
    const row rows[] = {
        {folder / "plain.cr2", answer_t::opened},
        {folder / "link.cr2", answer_t::opened},
        {folder / "missing.cr2", answer_t::not_found},
        {folder / "plain.cr2" / "below.cr2", answer_t::not_found},
        {folder / "circle.cr2", answer_t::not_found},
        {folder / "dangling.cr2", answer_t::not_found},
        {folder / std::string(300, 'a'), answer_t::not_found},
        {"", answer_t::not_found},
        {folder / "folder.cr2", answer_t::other_error},
        {folder / "pipe.cr2", answer_t::other_error},
        {"/dev/zero", answer_t::other_error},
    };
    for (const row& row : rows)
        EXPECT_EQ(answer_to(row.path), row.answer) << row.path;
}

TEST(InputPath, MayHoldAnyLetterAndBackslashesForSlashes) {
    const scratch_folder folder;
    const fs::path odd = folder.inq_path() / "Zoë’s 写真 📷";
    fs::create_directory(odd);
    fs::copy_file(sample("5d2_1comp.cr2"), odd / "a b.cr2");
    EXPECT_EQ(convert(odd / "a b.cr2", odd / "ü.tif").code, eds_ok);
    EXPECT_TRUE(fs::exists(odd / "ü.tif"));
}

} // namespace
