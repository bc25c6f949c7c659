#pragma once

#include "cli/job.h"
#include "cli/outcome.h"

#include <cstdint>
#include <string>

// What became of a job.
struct result_t {
    job_t job;
    outcome_t outcome = outcome_t::converted;
    std::string reason; // one line; empty where the file was converted
    std::string camera; // "Canon EOS 30D"; empty where nothing was converted
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    double seconds = 0;
};
