#include "tests/conversion/posix/faulty_system.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <fcntl.h>
#include <set>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

namespace {

using faulty_system::call_t;
using faulty_system::fault_t;
using faulty_system::naming_t;

bool is_at_work = false;
bool hides_first_file = false;
naming_t the_naming = naming_t::in_one_step;
fault_t the_fault;
int n_so_far = 0;
std::string struck;
std::set<int> new_files;
std::vector<call_t> calls;

bool is_one_of(std::string_view name, std::initializer_list<std::string_view> names) {
    return std::ranges::find(names, name) != names.end();
}

bool transfers(std::string_view name) {
    return is_one_of(name, {"read", "pread", "write", "pwrite"});
}

// Signals interrupt those alone that may wait.
bool can_strike(std::string_view name) {
    if (the_fault.error_number == EINTR)
        return transfers(name) || is_one_of(name, {"open", "fsync", "close", "flock", "fcntl", "getrandom"});
    return the_fault.error_number != 0 || transfers(name);
}

bool strikes(std::string_view name, int file = -1) {
    if (!is_at_work || !can_strike(name))
        return false;
    ++n_so_far;
    const bool is_later = the_fault.lasts && the_fault.n > 0 && n_so_far > the_fault.n;
    if (n_so_far == the_fault.n)
        struck = std::string(name) + (new_files.contains(file) ? " of a new file" : "");
    return n_so_far == the_fault.n || (is_later && !is_one_of(name, {"unlink", "close"}));
}

int fail(int error_number) {
    errno = error_number;
    return -1;
}

void keep(call_t call) {
    if (is_at_work)
        calls.push_back(std::move(call));
}

// Makes the call, unless it is struck.
template <typename... Arguments>
int make(std::string_view name, long number, Arguments... arguments) {
    if (strikes(name))
        return fail(the_fault.error_number);
    return static_cast<int>(::syscall(number, arguments...));
}

// The same for a call that changes names.
template <typename... Arguments>
int change(const call_t& call, long number, Arguments... arguments) {
    const int answer = make(call.name, number, arguments...);
    if (answer == 0)
        keep(call);
    return answer;
}

// What the file system does not have fails, if need be for another reason.
int refuse(std::string_view name, int error_number) {
    return fail(strikes(name) ? the_fault.error_number : error_number);
}

// Data is void where it is filled, const void where it is read from.
template <typename Data, typename... Position>
ssize_t transfer(std::string_view name, long number, int file, Data* data, std::size_t size,
                 Position... position) {
    if (size > 1 && strikes(name, file)) {
        if (the_fault.error_number != 0)
            return fail(the_fault.error_number);
        size = 1;
    }
    return ::syscall(number, file, data, size, position...);
}

} // namespace

namespace faulty_system {

section::section(const fault_t& fault, const setting_t& setting) {
    the_fault = fault;
    hides_first_file = setting.first_open == first_open_t::finds_no_file;
    the_naming = setting.naming;
    n_so_far = 0;
    struck.clear();
    new_files.clear();
    calls.clear();
    is_at_work = true;
}

section::~section() {
    is_at_work = false;
}

bool section::has_struck() const noexcept {
    return !struck.empty();
}

const std::string& section::inq_struck() const noexcept {
    return struck;
}

const std::vector<call_t>& section::inq_calls() const noexcept {
    return calls;
}

} // namespace faulty_system

extern "C" {

// Only a call that may make a file has a mode.
int open(const char* path, int flags, ...) { // NOLINT(cert-dcl50-cpp)
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    if (is_at_work && std::exchange(hides_first_file, false))
        return fail(ENOENT);
    const int file = make("open", SYS_openat, AT_FDCWD, path, flags, mode);
    if (file >= 0 && is_at_work && (flags & O_CREAT) != 0)
        new_files.insert(file);
    if (file >= 0)
        keep({(flags & O_CREAT) != 0 ? "create" : "open", file, path});
    return file;
}

// The descriptor is gone whatever the answer is.
int close(int file) {
    const bool is_struck = strikes("close", file);
    new_files.erase(file);
    const int answer = static_cast<int>(::syscall(SYS_close, file));
    return is_struck ? fail(the_fault.error_number) : answer;
}

ssize_t read(int file, void* data, std::size_t size) {
    return transfer("read", SYS_read, file, data, size);
}

ssize_t pread(int file, void* data, std::size_t size, off_t position) {
    return transfer("pread", SYS_pread64, file, data, size, position);
}

ssize_t write(int file, const void* data, std::size_t size) {
    return transfer("write", SYS_write, file, data, size);
}

ssize_t pwrite(int file, const void* data, std::size_t size, off_t position) {
    const ssize_t written = transfer("pwrite", SYS_pwrite64, file, data, size, position);
    if (written > 0)
        keep({"pwrite",
              file,
              {},
              {},
              static_cast<std::uint64_t>(position),
              std::string(static_cast<const char*>(data), static_cast<std::size_t>(written))});
    return written;
}

// Going to the medium each time would take longer than all the rest.
int fsync(int file) {
    if (strikes("fsync", file))
        return fail(the_fault.error_number);
    keep({"fsync", file});
    return 0;
}

int rename(const char* from, const char* to) noexcept {
    return change({"rename", -1, from, to}, SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0);
}

int renameat2(int from_folder, const char* from, int to_folder, const char* to, unsigned flags) noexcept {
    if (is_at_work && the_naming != naming_t::in_one_step)
        return refuse("renameat2", EINVAL);
    return change({"renameat2", -1, from, to}, SYS_renameat2, from_folder, from, to_folder, to, flags);
}

int link(const char* from, const char* to) noexcept {
    if (is_at_work && the_naming == naming_t::unguarded)
        return refuse("link", EPERM);
    return change({"link", -1, from, to}, SYS_linkat, AT_FDCWD, from, AT_FDCWD, to, 0);
}

int unlink(const char* path) noexcept {
    return change({"unlink", -1, path}, SYS_unlinkat, AT_FDCWD, path, 0);
}

int stat(const char* path, struct stat* found) noexcept {
    return make("stat", SYS_newfstatat, AT_FDCWD, path, found, 0);
}

int lstat(const char* path, struct stat* found) noexcept {
    return make("lstat", SYS_newfstatat, AT_FDCWD, path, found, AT_SYMLINK_NOFOLLOW);
}

int fstat(int file, struct stat* found) noexcept {
    return make("fstat", SYS_newfstatat, file, "", found, AT_EMPTY_PATH);
}

int faccessat(int folder, const char* path, int access, int flags) noexcept {
    return make("faccessat", SYS_faccessat2, folder, path, access, flags);
}

int flock(int file, int operation) noexcept {
    return make("flock", SYS_flock, file, operation);
}

int fcntl(int file, int command, ...) { // NOLINT(cert-dcl50-cpp)
    va_list arguments;
    va_start(arguments, command);
    const long argument = va_arg(arguments, long);
    va_end(arguments);
    return make("fcntl", SYS_fcntl, file, command, argument);
}

ssize_t getrandom(void* data, std::size_t size, unsigned flags) {
    return make("getrandom", SYS_getrandom, data, size, flags);
}

int madvise(void* memory, std::size_t size, int advice) noexcept {
    return make("madvise", SYS_madvise, memory, size, advice);
}
}
