#include "cli/posix/landlock.h"

#include "sdk/open/system/file_descriptor.h"

#include <cstdint>
#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using sdk_open::file_descriptor;

namespace {

// Younger than the headers of some systems whose kernels have them, like the versions that brought them.
constexpr std::uint64_t truncate_right = 1U << 14U;
constexpr std::uint64_t abstract_socket_scope = 1U << 0U;
constexpr std::uint64_t signal_scope = 1U << 1U;
constexpr long version_with_moves = 2;
constexpr long version_with_truncate = 3;
constexpr long version_with_scopes = 6;

// The kernel's landlock_ruleset_attr, which has grown at its end. A kernel takes members that it does not
// know as long as they are 0.
struct ruleset_t {
    std::uint64_t forbidden_to_files;
    std::uint64_t forbidden_to_network;
    std::uint64_t kept_within; // what reaches no process but those that are as restricted
};

constexpr std::uint64_t reading = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
constexpr std::uint64_t writing = LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_FILE |
                                  LANDLOCK_ACCESS_FS_MAKE_REG | LANDLOCK_ACCESS_FS_MAKE_DIR;
constexpr std::uint64_t never_needed = LANDLOCK_ACCESS_FS_EXECUTE | LANDLOCK_ACCESS_FS_REMOVE_DIR |
                                       LANDLOCK_ACCESS_FS_MAKE_CHAR | LANDLOCK_ACCESS_FS_MAKE_SOCK |
                                       LANDLOCK_ACCESS_FS_MAKE_FIFO | LANDLOCK_ACCESS_FS_MAKE_BLOCK |
                                       LANDLOCK_ACCESS_FS_MAKE_SYM;

// 0 or less where there is no Landlock.
long inq_version() noexcept {
    return ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
}

// All that is forbidden unless a rule allows it.
std::uint64_t forbidden_by(long version) noexcept {
    std::uint64_t rights = reading | writing | never_needed;
    if (version >= version_with_moves)
        rights |= LANDLOCK_ACCESS_FS_REFER;
    if (version >= version_with_truncate)
        rights |= truncate_right;
    return rights;
}

file_descriptor make_ruleset(long version) noexcept {
    const std::uint64_t scopes = version >= version_with_scopes ? abstract_socket_scope | signal_scope : 0;
    const ruleset_t rules{forbidden_by(version), 0, scopes};
    return file_descriptor(static_cast<int>(::syscall(SYS_landlock_create_ruleset, &rules, sizeof rules, 0)));
}

void allow(const file_descriptor& ruleset, const std::string& path, std::uint64_t rights) noexcept {
    const file_descriptor place(::open(path.c_str(), O_PATH | O_CLOEXEC));
    struct stat found {};
    if (!place.is_open() || ::fstat(place.inq(), &found) != 0)
        return;
    const std::uint64_t meaningful = S_ISDIR(found.st_mode) ? rights : rights & LANDLOCK_ACCESS_FS_READ_FILE;
    const landlock_path_beneath_attr rule{meaningful, place.inq()};
    ::syscall(SYS_landlock_add_rule, ruleset.inq(), LANDLOCK_RULE_PATH_BENEATH, &rule, 0);
}

} // namespace

bool landlock::restrict_process(const std::set<std::string>& read, const std::set<std::string>& written) {
    const long version = inq_version();
    const file_descriptor ruleset = version > 0 ? make_ruleset(version) : file_descriptor();
    if (!ruleset.is_open())
        return false;
    for (const std::string& path : read)
        allow(ruleset, path, reading);
    for (const std::string& path : written)
        allow(ruleset, path, reading | writing);
    return ::syscall(SYS_landlock_restrict_self, ruleset.inq(), 0) == 0;
}
