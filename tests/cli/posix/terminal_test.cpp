#include "tests/cli/posix/program_fixture.h"

namespace fs = std::filesystem;

namespace {

// A bad file, one whose worker would write to the terminal, a good one, and one that takes until the time is
// up, on a terminal of 60 columns.
class terminal_test : public folder_fixture {
protected:
    terminal_test() {
        write_file("in/a bad.crw", "II");
        fs::copy_file(SAMPLE_FILE, "in/b speak.cr2");
        fs::copy_file(SAMPLE_FILE, "in/b.cr2");
        fs::copy_file(SAMPLE_FILE, "in/c hang.cr2");
    }

    // Answers what the terminal was sent.
    static std::string run_on_terminal(const std::string& setting) {
        const words_t arguments = {"in",        "-rd", "out",        "-j",       "1",
                                   "--timeout", "1",   "--existing", "overwrite"};
        const std::string command = setting + " TERM=xterm script -qec \"stty cols 60; " + preload +
                                    command_of(arguments) + "\" /dev/null >output";
        EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), 1);
        return read_file("output");
    }
};

TEST_F(terminal_test, shows_failures_in_red_and_a_bar_below) {
    if (std::system("script -qc true /dev/null >script.log 2>&1") != 0)
        GTEST_SKIP() << read_file("script.log");
    const struct {
        std::string setting;
        std::string failure_begin;
        std::string failure_end;
        std::string bar;
    } rows[] = {
        {"NO_COLOR=", "\x1b[31m", "\x1b[0m", "\x1b[42m                  \x1b[0m\x1b[100m      \x1b[0m"},
        {"NO_COLOR=1", "", "", "##################------"},
    };
    for (const auto& [setting, failure_begin, failure_end, bar] : rows) {
        const std::string sent = run_on_terminal(setting);
        const std::string line = "raw-to-tiff: " + failure_begin +
                                 "in/a bad.crw: no Canon raw picture in it" + failure_end + "\r\n";
        EXPECT_NE(sent.find(line), std::string::npos) << sent;
        EXPECT_NE(sent.find("\r\x1b[K" + bar + " 3 of 4 files, 2 failed, "), std::string::npos) << sent;
        EXPECT_EQ(sent.find("spoken"), std::string::npos) << sent;
    }
}

} // namespace
