#include "tests/cli/program_run.h"

#include "tests/support/scratch_folder.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

// The end of the child process: becomes the program, or ends with what shells answer for a missing one.
[[noreturn]] void become(char* const* arguments, const fs::path& output, const fs::path& errors) noexcept {
    constexpr int flags = O_WRONLY | O_CREAT | O_CLOEXEC;
    ::dup2(::open(output.c_str(), flags, 0600), STDOUT_FILENO);
    ::dup2(::open(errors.c_str(), flags, 0600), STDERR_FILENO);
    ::execvp(arguments[0], arguments);
    ::_exit(127);
}

} // namespace

program_run_t run_program(std::vector<std::string> command) {
    const scratch_folder scratch;
    const fs::path output = scratch.inq_path() / "output";
    const fs::path errors = scratch.inq_path() / "errors";
    std::vector<char*> arguments(command.size() + 1);
    std::ranges::transform(command, arguments.begin(), [](std::string& word) { return word.data(); });

    const pid_t process = ::fork();
    if (process == 0)
        become(arguments.data(), output, errors);
    int status = 0;
    if (process < 0 || ::waitpid(process, &status, 0) < 0)
        throw std::system_error(errno, std::generic_category(), command.front());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), read_file(output),
            read_file(errors)};
}
