#include "tests/cli/program_run.h"

#include "tests/support/scratch_folder.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace {

void check(int error, const char* what) {
    if (error != 0)
        throw std::system_error(error, std::generic_category(), what);
}

// Which files take the place of the standard streams.
class redirection final {
public:
    redirection() { check(::posix_spawn_file_actions_init(&m_actions), "posix_spawn_file_actions_init"); }
    redirection(const redirection&) = delete;
    redirection& operator=(const redirection&) = delete;
    ~redirection() { ::posix_spawn_file_actions_destroy(&m_actions); }

    void add(int stream, const std::filesystem::path& file) {
        check(::posix_spawn_file_actions_addopen(&m_actions, stream, file.c_str(), O_WRONLY | O_CREAT, 0600),
              "posix_spawn_file_actions_addopen");
    }

    [[nodiscard]] const posix_spawn_file_actions_t* inq() const noexcept { return &m_actions; }

private:
    posix_spawn_file_actions_t m_actions{};
};

std::vector<char*> pointers_to(std::vector<std::string>& arguments) {
    std::vector<char*> pointers;
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    return pointers;
}

int wait_for(pid_t process) {
    int status = 0;
    while (::waitpid(process, &status, 0) < 0)
        check(errno == EINTR ? 0 : errno, "waitpid");
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

} // namespace

program_run_t run_program(const std::vector<std::string>& command) {
    const scratch_folder scratch;
    const std::filesystem::path output = scratch.inq_path() / "output";
    const std::filesystem::path errors = scratch.inq_path() / "errors";
    redirection streams;
    streams.add(STDOUT_FILENO, output);
    streams.add(STDERR_FILENO, errors);

    std::vector<std::string> arguments = command;
    pid_t process = 0;
    check(::posix_spawnp(&process, command.front().c_str(), streams.inq(), nullptr,
                         pointers_to(arguments).data(), environ),
          command.front().c_str());
    const int exit_code = wait_for(process);
    return {exit_code, read_file(output), read_file(errors)};
}
