#pragma once

#include "sdk/open/output_options.h"
#include "sdk/open/system/file_descriptor.h"
#include "sdk/open/system/system_calls.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace sdk_open {

// A file that appears under its name whole or not at all. It is written under a hard-to-guess name beside the
// target; commit() puts it in the target's place. Without commit() the destructor removes what was begun and
// an older target stays as it was. That name exists from the first write only: a process that is killed while
// the picture is still in the making, which takes most of the time, leaves nothing behind.
//
// A process that is killed while it writes leaves that file behind; whoever finds it can tell by the claim on
// it whether it is still in use.
//
// Every failure is thrown as failure(cannot_write_output), (disk_full) or, where the target appeared or
// changed against what commit() expects, (output_appeared), and names the target.
class output_file final {
public:
    // Throws at once where the target cannot be replaced: it is a folder, a link or no regular file, it is
    // write-protected, it is one of the raw files under whatever name, or its folder is missing or may not be
    // written. The list of raw files must outlive the output file.
    output_file(std::string path, const std::vector<system_calls::file_identity>& raw_files);
    output_file(const output_file&) = delete;
    output_file& operator=(const output_file&) = delete;
    ~output_file();

    // Writes all bytes at a position counted from the file's start.
    void write_at(std::uint64_t position, std::span<const std::byte> bytes);

    // Brings the file, of which something must have been written, to the medium and under its own name.
    // Nothing can be written afterwards. What is there by then is replaced; but given an expectation, which
    // may be that there is nothing, this fails where a target is there and differs from it. Where all but the
    // last step worked, which is to bring the name to the medium, the new file stays, and the failure says
    // so.
    void commit(const expected_target_t& expected = {});

private:
    // Answers what is there now.
    system_calls::file_status check_target() const;
    void take_name(const expected_target_t& expected) const;
    void create_beside_target();
    void create_claimed();
    [[nodiscard]] file_descriptor open_folder() const;
    void flush(const file_descriptor& folder) const;
    [[noreturn]] void throw_cannot_write(const std::string& why) const;
    [[noreturn]] void throw_errno() const;
    [[noreturn]] void throw_errno(int error_number) const;

    std::string m_path;
    const std::vector<system_calls::file_identity>& m_raw_files;
    std::string m_temporary_path; // empty while there is no such file
    file_descriptor m_file;
    file_descriptor m_claim; // outlives m_file: until the file has its own name, nobody may tidy it up
};

} // namespace sdk_open
