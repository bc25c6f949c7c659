#pragma once

#include "cli/result.h"

#include <optional>
#include <string>
#include <unordered_map>

// What an earlier run wrote into its log.
class earlier_run final {
public:
    // An empty name, and a log that is not there yet, stand for no earlier run. Of two lines for one file the
    // later counts; a line that was not written to its end is left out. Throws std::system_error where the
    // log cannot be read.
    explicit earlier_run(const std::string& log);

    // What becomes of a job because of it; nothing where the job is still to be done.
    [[nodiscard]] std::optional<result_t> settle(const job_t& job) const;

private:
    std::unordered_map<std::string, result_t> m_results; // by input
};
