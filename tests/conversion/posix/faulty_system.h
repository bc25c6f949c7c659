#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Stands between the code under test and the system: linking this into a binary replaces the C library's
// functions for files, which can fail then at any use.
namespace faulty_system {

struct fault_t {
    int n = 0;            // the call that it strikes, counted from 1 among those that it can strike; 0: none
    int error_number = 0; // 0: it strikes reads and writes, which transfer one byte of many
    bool lasts = false;   // later calls fail too, but for those that remove and close
};

struct call_t {
    std::string_view name; // "pwrite"
    int descriptor = -1;   // the one it gets, or answers
    std::string path = {};
    std::string target = {};
    std::uint64_t position = 0;
    std::string bytes = {}; // written
};

enum class first_open_t { works, finds_no_file };

// How a file can get a name that nothing else has: in one step, by a hard link, or by no means.
enum class naming_t { in_one_step, by_link, unguarded };

struct setting_t {
    first_open_t first_open = first_open_t::works;
    naming_t naming = naming_t::in_one_step;
};

// Strikes, and keeps the calls that change files and succeed, until the end of its life. One at a time, in a
// process whose other threads call nothing.
class section final {
public:
    explicit section(const fault_t& fault, const setting_t& setting = {});
    section(const section&) = delete;
    section& operator=(const section&) = delete;
    ~section();

    [[nodiscard]] bool has_struck() const noexcept;

    // The name of the first call struck, and whether it concerned a file that was made meanwhile: "close of a
    // new file".
    [[nodiscard]] const std::string& inq_struck() const noexcept;
    [[nodiscard]] const std::vector<call_t>& inq_calls() const noexcept;
};

} // namespace faulty_system
