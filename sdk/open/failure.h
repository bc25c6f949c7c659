#pragma once

#include "conversion/edsdk.h"

#include <exception>
#include <string>

namespace sdk_open {

// What the six functions answer where they fail. Callers tell only 0 and file_not_found apart from the rest.
enum class error_code_t : eds_error_t {
    failed = 1,
    out_of_memory = 2,
    not_initialised = 3,
    bad_argument = 4,
    not_supported = 5,
    file_not_found = eds_file_not_found,
    cannot_open_input = 64,
    cannot_write_output = 65,
    not_a_raw_picture = 66,
    damaged_picture = 67,
    disk_full = 68,
    output_appeared = 69, // or changed, and may not be replaced
};

// A step that failed: its code and, as one line of UTF-8 text, the reason.
class failure final : public std::exception {
public:
    failure(error_code_t code, std::string reason);

    [[nodiscard]] error_code_t inq_code() const noexcept { return m_code; }
    [[nodiscard]] const char* what() const noexcept override { return m_reason.c_str(); }

private:
    error_code_t m_code;
    std::string m_reason;
};

// What is wrong with most raw files that cannot be converted: failure(damaged_picture) for this reason,
// failure(not_a_raw_picture), and failure(not_supported) for pixel data that are stored in an unknown way.
[[noreturn]] void throw_damaged(const char* reason);
[[noreturn]] void throw_no_raw_picture();
[[noreturn]] void throw_unknown_storage();

// The system's own words for an errno value, for example "No space left on device".
[[nodiscard]] std::string system_message(int error_number);

} // namespace sdk_open
