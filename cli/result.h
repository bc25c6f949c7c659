#pragma once

#include "cli/job.h"
#include "cli/outcome.h"
#include "sdk/open/picture_facts.h"

#include <optional>
#include <string>

// What became of a job.
struct result_t {
    job_t job;
    outcome_t outcome = outcome_t::converted;
    std::string reason;                           // one line; empty where the job was done
    sdk_open::picture_facts facts;                // as far as the file was looked at
    std::string thumbnail = {};                   // a JPEG of the TIFF in base64; empty where there is none
    std::optional<double> modification_time = {}; // of the raw file before it was read, in seconds since 1970
    double seconds = 0;
};
