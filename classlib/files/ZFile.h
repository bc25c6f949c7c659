#pragma once

#include "classlib/files/ZFileLocation.h"

#include <cstdint>

// File-system operations on one location. Each works by itself and leaves nothing open. An operation that
// answers a bool answers false for every failure and leaves the cause in errno; it raises nothing. A location
// whose path text is empty fails every operation.
//
// No operation guards against what another process does to the same files meanwhile.
class ZFile final {
public:
    explicit ZFile(const ZFileLocation& location) : m_location(location) {}

    [[nodiscard]] const ZFileLocation& inq_location() const noexcept { return m_location; }

    // Whether there is an entry, be it a file or a folder; whether it is a folder; whether it is a regular
    // file.
    [[nodiscard]] static bool inq_exists(const ZFileLocation& location);
    [[nodiscard]] static bool inq_is_folder(const ZFileLocation& location);
    [[nodiscard]] static bool inq_is_file(const ZFileLocation& location);
    [[nodiscard]] bool inq_exists() const { return inq_exists(m_location); }
    [[nodiscard]] bool inq_is_folder() const { return inq_is_folder(m_location); }
    [[nodiscard]] bool inq_is_file() const { return inq_is_file(m_location); }

    // Whether the existing file can be opened while nobody else has it open: for reading, for reading and
    // writing, or with an access mask, in which 0x80000000 stands for reading and 0x40000000 for writing.
    [[nodiscard]] static bool inq_can_read(const ZFileLocation& location);
    [[nodiscard]] static bool inq_can_write(const ZFileLocation& location);
    [[nodiscard]] static bool inq_can_open(const ZFileLocation& location, std::uint32_t access);
    [[nodiscard]] bool inq_can_read() const { return inq_can_read(m_location); }
    [[nodiscard]] bool inq_can_write() const { return inq_can_write(m_location); }

    // Deletes the file; a folder is not deleted.
    static bool delete_file(const ZFileLocation& location);
    bool delete_file() const { return delete_file(m_location); }

    // Makes the folder that the location names, without its name part; only the last level is made. An
    // existing folder is a success, an existing file is deleted first. Throws ZFileException
    // (fileerr_no_location) for the empty location and ZCrtErrorException when the folder cannot be made.
    static void create_folder(const ZFileLocation& location);
    void create_folder() const { create_folder(m_location); }

    // Renames or moves the file, and then holds the target. Never replaces an existing entry.
    [[nodiscard]] bool rename_to(const ZFileLocation& target);

    // The same, deleting an existing target first when overwrite is true, unless that is this very file.
    // True, or throws ZFileException (fileerr_rename): the location stays as it was, and a deleted target
    // stays deleted.
    bool move_to(const ZFileLocation& target, bool overwrite);

    // Copies the bytes to the target, which is deleted before the file is opened; a target that may not be
    // deleted is an error, and a new one is its owner's alone. After a failure no part of a copy is left
    // behind. False, with both left alone, when the target is this very file.
    [[nodiscard]] bool copy_to(const ZFileLocation& target) const;

    // Whether both files can be read and hold the same bytes.
    [[nodiscard]] bool inq_same_contents(const ZFileLocation& other) const;

private:
    ZFileLocation m_location;
};
