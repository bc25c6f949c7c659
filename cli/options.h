#pragma once

#include "cli/job.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

enum class verbosity_t { quiet, normal, verbose };

// How many processes convert, and what each may use.
struct limits_t {
    unsigned workers = 1;
    double seconds = 0;             // for a file; 0: no limit
    std::uint64_t memory_bytes = 0; // for a worker; 0: no limit
};

// What the command line asks for.
struct options_t {
    task_t task = task_t::convert;
    std::vector<std::string> names; // raw files and folders
    std::string list;               // a file of more names, "-" for standard input; empty: none
    bool is_list_zero_separated = false;
    bool is_recursive = false;
    std::string output; // of the only raw file; empty: beside it
    std::string folder; // of all outputs; empty: beside the raw files
    std::optional<existing_t> existing;
    bool keeps_modification_times = false;
    sdk_open::compression_t compression = sdk_open::compression_t::none;
    limits_t limits;
    verbosity_t verbosity = verbosity_t::normal;
    bool has_json = false;
    std::string log;    // empty: that of the earlier run, if any
    std::string report; // an HTML page; empty: none
    std::string resume; // the log of an earlier run; empty: none

    // The log to write: this run's own, else the one that it goes on with. Empty: none.
    [[nodiscard]] const std::string& inq_log() const noexcept { return log.empty() ? resume : log; }

    // One raw file is named and nothing that could stand for many: the answer is the library's code.
    [[nodiscard]] bool is_single() const noexcept {
        return names.size() == 1 && list.empty() && folder.empty() && !is_recursive;
    }
};
