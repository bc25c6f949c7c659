#pragma once

#include "platform/utf16.h"

#include <cstdint>
#include <string>

// The file-system operations that the class library asks of the operating system. Paths are zero-terminated
// UTF-16 texts, not empty, with backslashes between their components. A failed operation leaves its cause in
// errno. Nothing here allocates but the temporary folder's name.
namespace platform {

enum class entry_kind_t {
    none, // no such entry, or one that cannot be examined
    file, // a regular file
    folder,
    other, // a device, a pipe, ...
};

[[nodiscard]] entry_kind_t inq_entry_kind(const utf16_t* path) noexcept;

// Whether both paths lead to one and the same existing entry, however they are spelled.
[[nodiscard]] bool inq_same_entry(const utf16_t* path, const utf16_t* other) noexcept;

// Deletes a file, never a folder.
[[nodiscard]] bool delete_file(const utf16_t* path) noexcept;

// Renames or moves an entry within its file system. Never replaces: fails when the target exists.
[[nodiscard]] bool rename_entry(const utf16_t* path, const utf16_t* target) noexcept;

// Makes one folder; its parent must exist.
[[nodiscard]] bool make_folder(const utf16_t* path) noexcept;

// The access mask of inq_can_open_exclusively: read, write, or both.
inline constexpr std::uint32_t access_read = 0x80000000;
inline constexpr std::uint32_t access_write = 0x40000000;

// Whether an existing file can be opened with this access while nobody else has it open. Never creates one.
[[nodiscard]] bool inq_can_open_exclusively(const utf16_t* path, std::uint32_t access) noexcept;

// The user's folder for temporary files, with a closing backslash; empty when the system names none. A name
// that is not UTF-8, or holds a backslash, leads elsewhere.
[[nodiscard]] std::basic_string<utf16_t> inq_temporary_folder();

} // namespace platform
