#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

// Every call that sdk/open makes to the system, in one place, so that a build that injects faults needs
// to replace one source file. Each answers as the system does: a failed call returns -1 (or false) and sets
// errno. Interrupted calls are repeated here.
namespace sdk_open::system_calls {

enum class file_kind_t { missing, regular, folder, other };

// The same for all names of a file, links included; different for two files that exist at the same time.
struct file_identity {
    std::uint64_t device;
    std::uint64_t number;

    [[nodiscard]] bool operator==(const file_identity&) const = default;
};

struct file_status {
    file_kind_t kind = file_kind_t::missing;
    std::uint64_t size = 0;              // bytes; of a regular file only
    file_identity identity{};            // of a regular file or a folder
    std::uint64_t modification_time = 0; // in the system's own units; of a regular file only

    [[nodiscard]] bool operator==(const file_status&) const = default;
};

// Opens for reading without waiting for a writer at the other end of a pipe.
[[nodiscard]] int open_for_reading(const std::string& path) noexcept;

// Makes a new file and opens it for writing; fails where anything of that name exists, a link included.
[[nodiscard]] int create_new(const std::string& path) noexcept;

// Marks a file as in use for those who tidy up abandoned files, until the answered descriptor is closed; -1
// where the system has no such marks.
[[nodiscard]] int claim(int descriptor) noexcept;

// Whether the open file has lost its name.
[[nodiscard]] bool is_removed(int descriptor) noexcept;

[[nodiscard]] int status_of_open_file(int descriptor, file_status& status) noexcept;

// Does not follow a link; a missing file is no failure but file_kind_t::missing.
[[nodiscard]] int status_of_path(const std::string& path, file_status& status) noexcept;

[[nodiscard]] bool may_write(const std::string& path) noexcept;
[[nodiscard]] bool may_make_files_in(const std::string& folder) noexcept;

// The number of bytes read, 0 at the end of the file.
[[nodiscard]] std::ptrdiff_t read_some_at(int descriptor, std::uint64_t position,
                                          std::span<std::byte> target) noexcept;

// The number of bytes written, which may be fewer than asked for.
[[nodiscard]] std::ptrdiff_t write_some_at(int descriptor, std::uint64_t position,
                                           std::span<const std::byte> source) noexcept;

// Whether a failure to write means that there is no more room, on the medium or for this user.
[[nodiscard]] bool says_full_disk(int error_number) noexcept;

// Returns when the file's contents are on the medium.
[[nodiscard]] int flush_to_medium(int descriptor) noexcept;

// Opens a folder for flush_folder(); EACCES where that may not be, or need not.
[[nodiscard]] int open_folder(const std::string& path) noexcept;

// Returns when the names in the folder are on the medium, as far as the file system can.
[[nodiscard]] int flush_folder(int descriptor) noexcept;

// The descriptor is gone whatever the answer is; a close that was interrupted is no failure.
int close_file(int descriptor) noexcept;

[[nodiscard]] int rename_over(const std::string& from, const std::string& to) noexcept;

// Fails with EEXIST where there is anything of that name. As safe as the file system allows.
[[nodiscard]] int rename_to_unused(const std::string& from, const std::string& to) noexcept;

int remove_file(const std::string& path) noexcept;

// Memory that is about to be filled as a whole comes in fewer and larger pages, where the system has them.
void prefer_large_pages(std::span<std::byte> memory) noexcept;

[[nodiscard]] int random_bytes(std::span<std::byte> target) noexcept;

} // namespace sdk_open::system_calls
