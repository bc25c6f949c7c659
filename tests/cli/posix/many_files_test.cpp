#include "tests/cli/posix/program_fixture.h"

#include <chrono>
#include <climits>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

using namespace std::chrono_literals;

// Each test has a tree of two sound files and a damaged one, and what may confuse a walk.
class many_files_test : public folder_fixture {
protected:
    many_files_test() {
        fs::create_directory("in/below");
        fs::copy_file(SAMPLE_FILE, "in/a.CR2");
        fs::copy_file(SAMPLE_FILE, "in/below/b\n.cr2");
        write_file("in/bad.crw", "no picture");
        write_file("in/notes.txt", "none");
        fs::create_directory_symlink(m_folder / "in", "in/below/circle");
        fs::create_directory("in/folder.cr2");
    }
};

// Superusers give up the right to ignore permissions; nobody else has it.
std::string unprivileged() {
    return ::geteuid() == 0 ? "setpriv --bounding-set=-dac_override,-dac_read_search" : "";
}

// The system takes the path of each folder but the last.
void make_deep_folder(const fs::path& folder) {
    const fs::path start = fs::current_path();
    for (fs::path name = folder; fs::current_path().string().size() < PATH_MAX - 256;
         name = std::string(200, 'd')) {
        fs::create_directory(name);
        fs::current_path(name);
    }
    fs::create_directories(fs::path(std::string(200, 'd')) / std::string(200, 'd'));
    fs::current_path(start);
}

TEST_F(many_files_test, answers_for_all) {
    fs::create_directory("locked");
    fs::permissions("locked", fs::perms::none);
    fs::create_directories("listed/below");
    write_file("listed/a.cr2", "");
    fs::permissions("listed", fs::perms::owner_read);
    make_deep_folder("../deep");
    write_file("bad\xFF.cr2", "");
    write_file("back\\slash.cr2", "");
    write_file("file", "");
    fs::create_symlink("circle.cr2", "circle.cr2");
    fs::create_directory("other");
    fs::copy_file(SAMPLE_FILE, "other/a.cr2");
    fs::create_directory_symlink("other", "[x,y]");
    write_file("cut log", "{\"inp");
    write_file("lost log", std::string(100, '\0'));
    write_file("list", "");
    write_file("other.json", "{\n  \"input\": 1\n}\n");
    write_file("empty.html", "");
    write_file("mine.html", "<p>mine");
    fs::create_symlink("list", "link to list");
    fs::create_symlink("out/a.tif", "link to TIFF");
    const std::string in_gone_folder = "mkdir gone; cd gone; rmdir ../gone;";
    const std::string both = "out/a.tif out/below/b\n.tif ";
    const struct {
        words_t arguments;
        int exit_code;
        std::string output;  // a part of what the program says on standard output
        std::string errors;  // and on standard error
        std::string outputs; // all TIFFs
        std::string prefix = {};
        std::string suffix = {};
    } rows[] = {
        {{"-r", "in", "-d", "out"}, 1, "", "in/bad.crw: no Canon raw picture in it\n", both},
        {{"-r", "in", "-d", "out"}, 1, "", "2 converted, 0 skipped, 1 failed", both},
        {{"-rvd", "out", "in"}, 1, "", "in/below/b?.cr2: converted in", both},
        {{"-rqd", "out", "in/below"}, 0, "", "", "out/b\n.tif "},
        {{"-rd", "out", "in", "--json"}, 1, R"("outcome":"bad_input","code":11,"reason":"no)", "", both},
        {{"-rd", "out", "in", "--json"}, 1, R"("camera":"Canon EOS 5D Mark II","width":)", "", both},
        {{"-rd", "out", "in", "--json"},
         1,
         R"({"sum":{"files":3,"converted":2,"skipped":0,"failed":1,"left":0)",
         "",
         both},
        {{"--info", "-r", "in", "-j", "1"},
         1,
         "size           400 x 300\n  orientation    upright\n",
         "",
         ""},
        {{"--info", "-r", "in"}, 1, "in/below/b?.cr2\n  camera  ", "in/bad.crw: no Canon raw", ""},
        {{"--info", "-r", "in", "--json"},
         1,
         R"("outcome":"described","code":0,"reason":"","camera")",
         "",
         ""},
        {{"--info", "-r", "in", "--json"}, 1, R"("exposure_seconds":0.008,"aperture":8.0,"iso":100)", "", ""},
        {{"--info", "none.cr2"}, 10, "", "none.cr2: there is no such file", ""},
        {{"--info", "in/bad.crw"}, 11, "", "in/bad.crw: no Canon raw picture in it\n", ""},
        {{"--info", "in/a.CR2", "-d", "out"}, 2, "", "--info writes no files", ""},
        {{"in/a.CR2", "-o", "out.tif", "--compression", "none,lzw"}, 2, "", "none,lzw not in", ""},
        {{"in/a.CR2", "in/a.CR2", "./in/../in/a.CR2", "-d", "out"}, 0, "", "1 converted", "out/a.tif "},
        {{"in/a.CR2", "other/a.cr2", "-d", "out"},
         2,
         "",
         "a.CR2 and other/a.cr2 would both become out/a.tif",
         ""},
        {{"in", "-d", "out"}, 1, "", "in: not a .cr2 or .crw file", ""},
        {{"in/a.CR2", "in/notes.txt", "none.cr2", "-d", "out"}, 1, "", "notes.txt: not a .cr2", "out/a.tif "},
        {{"in/a.CR2", "none.cr2", "-d", "out"}, 1, "", "none.cr2: there is no such file", "out/a.tif "},
        {{"in/a.CR2", "circle.cr2", "-d", "out"}, 1, "", "circle.cr2: there is no such file", "out/a.tif "},
        {{"in/a.CR2", "bad\xFF.cr2", "-d", "out"}, 1, "", "the name is not UTF-8", "out/a.tif "},
        {{"in/a.CR2", "back\\slash.cr2", "-d", "out"}, 1, "", "holds a backslash", "out/a.tif "},
        {{"in/a.CR2", "-d", "file"}, 2, "", "file: not a folder", ""},
        {{"in/a.CR2", "-d", "file/out"}, 3, "", "cannot make the folder", ""},
        {{"in/a.CR2", "-d", "locked/out"}, 3, "", "cannot make the folder", "", unprivileged()},
        {{"in/a.CR2", "-d", "locked"}, 3, "", "Permission denied", "", unprivileged()},
        {{"-r", "in/below", "locked", "-d", "out"},
         3,
         "",
         "locked: cannot read the folder",
         "out/b\n.tif ",
         unprivileged()},
        {{"-r", "in/below", "listed", "-d", "out"},
         3,
         "",
         "listed: cannot read the folder: Permission denied\n",
         "out/b\n.tif ",
         unprivileged()},
        {{"-r", "listed/below", "listed/a.cr2", "-d", "out"},
         3,
         "",
         "listed/below: cannot look at it: Permission denied\n",
         "",
         unprivileged()},
        {{"-r", "in/below", "../deep", "-d", "out"},
         3,
         "",
         "ddd: cannot read the folder: File name too long\n",
         "out/b\n.tif "},
        {{"in/a.CR2", "-d", "out", "-o", "x.tif"}, 2, "", "", ""},
        {{"in/a.CR2", "other/a.cr2", "-o", "x.tif"}, 2, "", "-o takes a single raw file", ""},
        {{"other/a.cr2", "-o", "out.tif"}, 0, "", "", "out.tif "},
        {{"--files-from", "-", "-d", "out"},
         1,
         "",
         "1 converted, 0 skipped, 1 failed",
         "out/a.tif ",
         "printf 'in/a.CR2\\n\\nnone.cr2\\n' |"},
        {{"--files-from", "-", "-0", "-rd", "out"},
         0,
         "",
         "2 converted",
         "out/in/a.tif out/in/below/b\n.tif ",
         "find in -name '[ab]*.[cC][rR]2' -print0 |"},
        {{"--files-from", "none"}, 2, "", "cannot read the list none", ""},
        {{"--files-from", "-", "-d", "out"}, 2, "", "cannot read the list on standard input", "", "", "<in"},
        {{"-r", "[x,y]", "-d", "out"}, 0, "", "1 converted", "out/a.tif "},
        {{"in/a.CR2", "\xC2\x9B.cr2", "-d", "out"}, 1, "", "raw-to-tiff: ?.cr2: there", "out/a.tif "},
        {{"\x9B \xC0\x9B \xE0\x80\x9B \xED\xA0\x80 \xE2\x82 \xF4\x90\x80\x80 \u00FC\U0001F4F7.cr2", "-r"},
         1,
         "",
         "raw-to-tiff: ? ?? ??? ??? ?? ???? \u00FC\U0001F4F7.cr2: the name is not UTF-8",
         ""},
        {{"in/a.CR2", std::string(100'000, 'a') + ".cr2", "-d", "out"}, 1, "", "is too long", "out/a.tif "},
        {{"in/a.CR2", "-o", "in/b.cr2"}, 2, "", "a raw file is never written to: in/b.cr2", ""},
        {{"in/a.CR2", "-d", "out", "--log", "in/a.CR2"}, 2, "", "never written to: in/a.CR2", ""},
        {{"in/a.CR2", "-d", "out", "--resume", "in/a.CR2"}, 2, "", "never written to: in/a.CR2", ""},
        {{"in/a.CR2", "-d", "out", "--timeout", "nan"}, 2, "", "not a number of seconds", ""},
        {{"in/a.CR2", "-d", "out", "--memory-limit", "-1"}, 2, "", "not a size above 0", ""},
        {{"in/a.CR2", "-d", "out", "--wrong\n"}, 2, "", "--wrong? (see raw-to-tiff --help)\n", ""},
        {{"in/a.CR2", "-d", "out", "--log", "in/notes.txt"}, 2, "", "in/notes.txt: it is no log", ""},
        {{"in/a.CR2", "-d", "out", "--resume", "other.json"}, 2, "", "other.json: it is no log", ""},
        {{"in/a.CR2", "-d", "out", "--log", "cut log"}, 0, "", "", "out/a.tif "},
        {{"in/a.CR2", "-d", "out", "--log", "cut log"}, 0, "", "", "out/a.tif "},
        {{"in/a.CR2", "-d", "out", "--resume", "lost log"}, 0, "", "", "out/a.tif "},
        {{"in/a.CR2", "-d", "out", "--resume", "lost log"}, 0, "", "", "out/a.tif "},
        {{"in/a.CR2", "-d", "out", "--resume", "cut log"},
         3,
         "",
         "out/a.tif: Is a directory\n",
         "out/a.tif ",
         "mkdir -p out/a.tif;"},
        {{"b.CR2", "-d", "out", "--resume", "log"},
         0,
         "",
         "0 converted, 1 skipped",
         "out/b.tif ",
         "cp in/a.CR2 b.CR2; '" PROGRAM "' -q b.CR2 -d out --resume log; rm b.CR2;"},
        {{"b.CR2", "-d", "out", "--resume", "log of bad"},
         1,
         "",
         "b.CR2: there is no such file",
         "",
         "head -c 9999 in/a.CR2 >b.CR2; '" PROGRAM "' -q b.CR2 -d out --resume 'log of bad'; rm b.CR2;"},
        {{"in/a.CR2", "-d", "out", "--existing", "skip"},
         3,
         "",
         "out/a.tif: not a regular file\n",
         "out/a.tif ",
         "mkdir out; ln -s nowhere out/a.tif;"},
        {{"in/a.CR2", "-d", "out", "--existing", "skip"},
         0,
         "",
         "0 converted, 1 skipped",
         "out/a.tif ",
         "mkdir out; ln -s ../file out/a.tif;"},
        {{"in/a.CR2", "-d", "out", "--log", "./out/a.tif"},
         2,
         "",
         "out/a.tif cannot be both the log and the TIFF of in/a.CR2",
         ""},
        {{"--files-from", "list", "--log", "./list"},
         2,
         "",
         "./list cannot be both the list and the log",
         ""},
        {{"--files-from", "list", "--log", "link to list"}, 2, "", "both the list and the log", ""},
        {{"in/a.CR2", "-d", "out", "--log", "link to TIFF"}, 2, "", "both the log and the TIFF of", ""},
        {{"in/a.CR2", "--files-from", "/dev/stdin", "-d", "out", "--log", "/dev/null"},
         0,
         "",
         "",
         "out/a.tif ",
         "",
         "</dev/null"},
        {{"in/a.CR2", "-d", "out", "--report", "x.html", "--resume", "x.html"}, 2, "", "and the report", ""},
        {{"in/a.CR2", "-d", "out", "--report", "empty.html"}, 0, "", "", "out/a.tif "},
        {{"in/a.CR2", "-d", "out", "--report", "empty.html"}, 0, "", "", "out/a.tif "},
        {{"in/a.CR2", "-d", "out", "--report", "mine.html"}, 2, "", "mine.html: it is no report", ""},
        {{"in/a.CR2", "-d", "out"},
         3,
         "",
         "cannot find the working folder: No such file",
         "",
         in_gone_folder},
        {{"in/a.CR2", "-d", "out", "--log", "none/log"}, 2, "", "cannot write none/log", ""},
        {{"in/a.CR2", "-d", "out", "--log", "pipe"},
         0,
         "",
         "",
         "out/a.tif ",
         "mkfifo pipe; cat pipe >/dev/null & timeout 9"},
        {{"in/a.CR2", "-d", "out", "--resume", "pipe"}, 2, "", "not a regular file: pipe", "", "timeout 9"},
        {{"in/a.CR2", "out.tif", "--log", "/dev/full"}, 11, "", "cannot write /dev/full: No", "out.tif "},
        {{"in/a.CR2", "-d", "out", "--json"}, 3, "", "standard output", "out/a.tif ", "", ">&-"},
        {{"in/a.CR2", "in/bad.crw", "-d", "out"}, 1, "", "", "out/a.tif ", "", "2>&- >&- <&-"},
    };
    for (const auto& [arguments, exit_code, output, errors, outputs, prefix, suffix] : rows) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        EXPECT_EQ(run(arguments, prefix, suffix), exit_code);
        EXPECT_NE(m_output.find(output), std::string::npos) << m_output;
        EXPECT_NE(m_errors.find(errors), std::string::npos) << m_errors;
        EXPECT_EQ(list_outputs(), outputs);
        EXPECT_TRUE(fs::is_empty(m_temporary));
        fs::remove_all("out");
        fs::remove("out.tif");
    }
}

TEST_F(many_files_test, knows_a_folder_by_two_names) {
    if (std::system("unshare --mount true") != 0)
        GTEST_SKIP() << "only the superuser can mount a folder twice";
    const struct {
        std::string folder;
        std::string twin;
        words_t arguments;
        int exit_code;
        std::string errors;
    } rows[] = {
        {"in", "twin", {"in/a.CR2", "twin/a.CR2", "-d", "out"}, 0, "1 converted"},
        {"out/x", "out/y", {"-rd", "out", "tree"}, 2, "b.crw would both become out/y/new/b.tif"},
    };
    for (const char* const folder : {"twin", "out/x", "out/y", "tree/x/new", "tree/y/new"})
        fs::create_directories(folder);
    write_file("tree/x/new/b.cr2", "");
    write_file("tree/y/new/b.crw", "");
    for (const auto& [folder, twin, arguments, exit_code, errors] : rows) {
        const std::string script = "mount --bind " + folder + ' ' + twin + R"( && "$0" "$@")";
        EXPECT_EQ(run(arguments, "unshare --mount sh -c '" + script + "'"), exit_code);
        EXPECT_NE(m_errors.find(errors), std::string::npos) << m_errors;
    }
}

TEST_F(many_files_test, minds_what_exists) {
    const fs::path raw = "in/a.CR2";
    const auto now = fs::last_write_time(raw);
    const struct {
        words_t choice;
        std::chrono::seconds age; // of the TIFF, beyond the raw file's
        int exit_code;
        bool is_converted;
    } rows[] = {
        {{}, 0s, 1, false},
        {{"--existing", "error"}, 9s, 1, false},
        {{"--existing", "skip"}, 9s, 0, false},
        {{"--existing", "newer"}, 1s, 0, true},
        {{"--existing", "newer", "--preserve-times"}, 9s, 0, true},
        {{"--existing", "newer", "--preserve-times"}, 1s, 0, false}, // as on FAT
        {{"--existing", "newer"}, 0s, 0, false},
        {{"--existing", "overwrite"}, -9s, 0, true},
        {{"--existing", "overwrite", "--preserve-times"}, -9s, 0, true},
    };
    fs::create_directory("out");
    for (const auto& [choice, age, exit_code, is_converted] : rows) {
        SCOPED_TRACE(testing::PrintToString(choice));
        write_file("out/a.tif", "older");
        fs::last_write_time("out/a.tif", now - age);
        words_t arguments = {raw, "-d", "out"};
        arguments.insert(arguments.end(), choice.begin(), choice.end());
        EXPECT_EQ(run(arguments), exit_code) << m_errors;
        EXPECT_EQ(read_file("out/a.tif") != "older", is_converted);
        const bool keeps_time = is_converted && choice.size() == 3;
        EXPECT_TRUE(!keeps_time || fs::last_write_time("out/a.tif") == now);
    }
}

} // namespace
