#include "tests/cli/posix/program_fixture.h"

#include <linux/landlock.h>
#include <random>
#include <sys/syscall.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

class workers_test : public folder_fixture {
protected:
    static void add_raw_file(const std::string& name) { fs::copy_file(SAMPLE_FILE, "in/" + name); }
};

TEST_F(workers_test, lose_only_their_own_file) {
    for (const char* name : {"a.cr2", "b crash.cr2", "c.cr2", "d kill.cr2", "e.cr2", "f hang.cr2", "g.cr2"})
        add_raw_file(name);
    const std::pair<const char*, const char*> rows[] = {{"1", ""}, {"3", "env --ignore-signal=CHLD"}};
    for (const auto& [workers, setting] : rows) {
        EXPECT_EQ(run({"-rd", "out", "in", "-j", workers, "--timeout", "3", "--log", "log"},
                      preload + std::string(setting)),
                  3);
        EXPECT_EQ(list_outputs(), "out/a.tif out/c.tif out/e.tif out/g.tif ");
        const char* const complaints[] = {"in/b crash.cr2: the process that converted it ended: Segmentation",
                                          "in/d kill.cr2: the process that converted it ended: Killed",
                                          "in/f hang.cr2: it took longer than --timeout allows",
                                          "4 converted, 0 skipped, 3 failed"};
        for (const char* const complaint : complaints)
            EXPECT_NE(m_errors.find(complaint), std::string::npos) << m_errors;
        EXPECT_TRUE(fs::is_empty(m_temporary));
        fs::remove_all("out");
    }
    EXPECT_EQ(run({"in/b crash.cr2", "single.tif"}, preload), 11);
}

TEST_F(workers_test, are_contained) {
    if (::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION) < 1)
        GTEST_SKIP() << "a kernel without Landlock";
    const std::string refused = "cannot open it: ";
    const std::string ended = "the process that converted it ended: Bad system call";
    const struct {
        std::string name; // of a fate
        std::string reason;
    } rows[] = {
        {"write", refused + "Permission denied"},
        {"read", refused + "Permission denied"},
        {"socket", ended},
        {"program", ended},
        {"signal", ended},
        {"owner", refused + "Function not implemented"},
        {"flags", refused + "Function not implemented"},
        {"limit", refused + "Function not implemented"},
        {"cut", refused + "Function not implemented"},
        {"send", refused + "Function not implemented"},
        {"bind", refused + "Operation not permitted"},
    };
    for (const auto& row : rows)
        add_raw_file(row.name + ".cr2");
    add_raw_file("a.cr2");
    add_raw_file("f.cr2");
    fs::create_directory("linked");
    fs::rename("in/f.cr2", "linked/picture");
    fs::create_symlink("../linked/picture", "in/f.cr2");
    EXPECT_EQ(run({"-vrd", "out", "in", "-j", "1"}, preload), 3);
    EXPECT_EQ(list_outputs(), "out/a.tif out/f.tif ");
    const std::string bounds = "the workers are contained by Landlock and a filter of system calls\n";
    EXPECT_NE(m_errors.find(bounds), std::string::npos) << m_errors;
    for (const auto& [name, reason] : rows)
        EXPECT_NE(m_errors.find("in/" + name + ".cr2: " + reason + '\n'), std::string::npos)
            << name << m_errors;
    EXPECT_FALSE(fs::exists("elsewhere"));
}

TEST_F(workers_test, have_a_memory_limit) {
    if (IS_SANITIZED)
        GTEST_SKIP() << "the address sanitizer takes terabytes of address space";
    add_raw_file("a.cr2");
    EXPECT_EQ(run({"-rd", "out", "in", "--memory-limit", "1MB"}), 1);
    EXPECT_NE(m_errors.find("not enough memory"), std::string::npos) << m_errors;
    EXPECT_EQ(run({"-rd", "out", "in", "--memory-limit", "2GB"}), 0) << m_errors;
}

TEST_F(workers_test, are_stopped) {
    add_raw_file("a.cr2");
    add_raw_file("b.cr2");
    const std::string hanging = std::string(preload) + "HANG_AT_FSYNC=1 ";
    EXPECT_EQ(run({"-rd", "out", "in", "--timeout", "1"}, hanging), 1);
    EXPECT_EQ(list_outputs(), "");
    const struct {
        std::string stop;
        words_t arguments;
        std::string errors;
    } rows[] = {
        {"-s INT 1", {"-rd", "out", "in"}, "0 converted, 0 skipped, 0 failed"},
        {"-s INT --foreground 1", {"-rd", "out", "in", "-q"}, "2 left"},
        {"-s TERM 1", {"-rd", "out", "in", "-j", "1"}, "2 left"},
        {"-s HUP 1", {"in/a.cr2", "out.tif"}, "raw-to-tiff: interrupted\n"},
    };
    for (const auto& [stop, arguments, errors] : rows) {
        EXPECT_EQ(run(arguments, hanging + "timeout --preserve-status " + stop), 130);
        EXPECT_NE(m_errors.find(errors), std::string::npos) << m_errors;
        EXPECT_EQ(list_outputs(), "");
        EXPECT_TRUE(fs::is_empty(m_temporary));
    }
    run({"-rd", "out", "in"}, hanging + "timeout -s KILL 2");
    EXPECT_NE(list_outputs(), "") << "killed too early";
    EXPECT_EQ(run({"-rd", "out", "in"}), 0) << m_errors;
    EXPECT_EQ(list_outputs(), "out/a.tif out/b.tif ");
    EXPECT_TRUE(fs::is_empty(m_temporary));
}

// The prefix makes a pipe that is full after 64 KiB.
TEST_F(workers_test, are_stopped_while_nobody_reads) {
    for (int i = 0; i < 700; ++i)
        write_file("in/" + std::to_string(i) + ".cr2", "");
    const std::string prefix =
        "rm -f pipe; mkfifo pipe; exec 3<>pipe; timeout --preserve-status -k 5 -s TERM 1";
    const struct {
        words_t arguments;
        std::string suffix;
    } rows[] = {
        {{"-rqd", "out", "in", "--json"}, ">&3"},
        {{"-rqd", "out", "in", "--log", "pipe"}, ""},
    };
    for (const auto& [arguments, suffix] : rows) {
        EXPECT_EQ(run(arguments, prefix, suffix), 130);
        EXPECT_NE(m_errors.find("interrupted: "), std::string::npos) << m_errors;
    }
}

TEST_F(workers_test, have_no_less_time_after_a_standstill) {
    add_raw_file("a.cr2");
    const std::string script = R"("$@" & sleep 0.5; kill -STOP $!; sleep 3; kill -CONT $!; wait $!)";
    EXPECT_EQ(run({"-rd", "out", "in", "--timeout", "2", "--json"},
                  std::string(preload) + "HANG_AT_FSYNC=1 sh -c '" + script + "' sh"),
              1);
    EXPECT_NE(m_output.find("\"seconds\":2."), std::string::npos) << m_output;
}

TEST_F(workers_test, are_killed_with_the_program_and_go_on) {
    for (int i = 0; i < 30; ++i)
        add_raw_file(std::to_string(i) + ".cr2");
    write_file("in/bad.cr2", read_file("in/0.cr2").substr(0, 100'000));
    ASSERT_EQ(run({"-rd", "never killed", "in"}), 1) << m_errors;
    std::mt19937 random(1);
    int code = 137;
    int attempts = 0;
    for (; code == 137 && attempts < 60; ++attempts) {
        // The first time before all can be done, then a little later from time to time.
        const auto milliseconds = 15 + std::uniform_int_distribution(1, 20)(random) * attempts;
        const std::string kill = "timeout -s KILL " + std::to_string(milliseconds / 1e3);
        code = run({"-rd", "out", "in", "--resume", "log", "--report", "all.html"},
                   kill + " setpriv --pdeathsig KILL");
    }
    EXPECT_EQ(code, 1) << m_errors;
    EXPECT_GT(attempts, 1);
    for (const std::string& name : list_folder("never killed"))
        EXPECT_TRUE(read_file("never killed/" + name) == read_file("out/" + name)) << name;
    EXPECT_EQ(list_folder("out"), list_folder("never killed"));
    EXPECT_EQ(list_folder(m_temporary), words_t());
    EXPECT_EQ(list_folder("."), words_t({"all.html", "in", "log", "never killed", "out", "tmp"}));
    EXPECT_EQ(run({"-rd", "out", "in", "--resume", "log"}), 1);
    EXPECT_NE(m_errors.find("0 converted, 30 skipped, 1 failed"), std::string::npos) << m_errors;
    // A file that has changed is taken up, also where another log knows it only as one to skip.
    for (const char* const log : {"log", "another log"}) {
        run({"-rd", "out", "in", "--resume", log});
        write_file("in/bad.cr2", read_file("in/0.cr2"));
        EXPECT_EQ(run({"-rd", "out", "in", "--resume", log}), 0);
        EXPECT_NE(m_errors.find("1 converted, 30 skipped, 0 failed"), std::string::npos) << m_errors;
    }
}

// The first appears, or is touched, while the worker is at it, the second before.
TEST_F(workers_test, mind_what_appears_after_the_plan) {
    for (const char* name : {"a appear.cr2", "b.cr2", "c.cr2"})
        add_raw_file(name);
    const std::string with_older_ones = "mkdir out; touch -d 2020-01-01 'out/a appear.tif' out/b.tif;";
    const struct {
        std::string choice;
        std::string setting;
        int exit_code;
        std::string told;
        std::uintmax_t n_replaced;
    } rows[] = {
        {"error", "", 1, "in/a appear.cr2: out/a appear.tif exists", 0},
        {"error", "", 1, "in/b.cr2: out/b.tif exists", 0},
        {"error", "NO_NOREPLACE=1 ", 1, "1 converted, 0 skipped, 2 failed", 0},
        {"error", "NO_NOREPLACE=1 NO_LINKS=1 ", 1, "1 converted, 0 skipped, 2 failed", 0},
        {"skip", "", 0, "1 converted, 2 skipped, 0 failed", 0},
        {"newer", "", 0, "1 converted, 2 skipped, 0 failed", 0},
        {"newer", with_older_ones, 0, "1 converted, 2 skipped, 0 failed", 0},
        {"overwrite", "", 0, "3 converted", 2},
        {"overwrite", with_older_ones, 0, "3 converted", 2},
    };
    for (const auto& [choice, setting, exit_code, told, n_replaced] : rows) {
        SCOPED_TRACE(setting + choice);
        EXPECT_EQ(run({"-rd", "out", "in", "-j", "1", "--existing", choice}, setting + preload), exit_code);
        EXPECT_NE(m_errors.find(told), std::string::npos) << m_errors;
        EXPECT_EQ(list_outputs(), "out/a appear.tif out/b.tif out/c.tif ");
        EXPECT_EQ(!fs::is_empty("out/a appear.tif") + !fs::is_empty("out/b.tif"), n_replaced);
        fs::remove_all("out");
    }
}

TEST_F(workers_test, tidy_up_what_is_their_own) {
    add_raw_file("a.cr2");
    fs::create_directory("out");
    const struct {
        fs::path file;
        fs::perms folder_rights;
        bool is_theirs;
    } rows[] = {
        {"tmp/raw-to-tiff-run-0aZ9xy/raw-to-tiff-workers/1/copy", fs::perms::owner_all, true},
        {"tmp/raw-to-tiff-run-0aZ9xx/raw-to-tiff-workers/1/copy", fs::perms(0755), false},
        {"tmp/raw-to-tiff-run-0aZ9xz/keep", fs::perms::owner_all, false},
        {"tmp/raw-to-tiff-run-2026/raw-to-tiff-workers/keep", fs::perms::owner_all, false},
        {"out/.raw-to-tiff-0123456789abcduv.part", fs::perms::all, true},
        {"out/skipped/.raw-to-tiff-0123456789abcduv.part", fs::perms::all, true},
        {"out/.raw-to-tiff-0123456789abcduz.part", fs::perms::all, false},
        {"out/.raw-to-tiff-mine.part", fs::perms::all, false},
    };
    for (const auto& row : rows) {
        fs::create_directories(row.file.parent_path());
        write_file(row.file, "");
        fs::permissions(*row.file.begin() / *std::next(row.file.begin()), row.folder_rights);
    }
    fs::create_directory("out/.raw-to-tiff-0123456789abcdef.part");
    fs::create_directory("in/skipped");
    add_raw_file("skipped/b.cr2");
    write_file("out/skipped/b.tif", "");
    EXPECT_EQ(run({"-rd", "out", "in", "--existing", "skip"}), 0) << m_errors;
    for (const auto& row : rows)
        EXPECT_NE(fs::exists(row.file), row.is_theirs) << row.file;
    EXPECT_TRUE(fs::exists("out/.raw-to-tiff-0123456789abcdef.part"));
    EXPECT_FALSE(fs::exists("tmp/raw-to-tiff-run-0aZ9xy"));
}

TEST_F(workers_test, have_a_full_disk) {
    if (std::system("unshare --mount true") != 0)
        GTEST_SKIP() << "only the superuser can make a small disk";
    for (const char* name : {"a.cr2", "b.cr2", "c.cr2", "d.cr2"})
        add_raw_file(name);
    fs::create_directory("out");
    const std::string script =
        R"(mount -t tmpfs -o size=1200k none out && "$@"; code=$?; ls -A out >&2; exit $code)";
    EXPECT_EQ(run({"-rd", "out", "in", "-j", "1"}, "unshare --mount sh -c '" + script + "' sh"), 3);
    EXPECT_NE(m_errors.find("No space left on device"), std::string::npos) << m_errors;
    EXPECT_NE(m_errors.find("stopped: 1 converted, 0 skipped, 1 failed"), std::string::npos) << m_errors;
    EXPECT_TRUE(m_errors.ends_with("\na.tif\n")) << m_errors;
}

} // namespace
