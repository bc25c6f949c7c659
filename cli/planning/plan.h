#pragma once

#include "cli/options.h"
#include "cli/result.h"

#include <string>
#include <vector>

// What is to be done, made before anything is.
struct plan_t {
    std::vector<job_t> jobs;
    std::vector<result_t> settled;      // what needs no conversion, and what cannot have one
    std::vector<std::string> conflicts; // a line for each file with two roles: nothing may be done then
};

// Finds the raw files and decides where their TIFFs go, if any are to be made. Throws std::system_error where
// a list or a log cannot be read, another std::runtime_error where the working folder is gone.
[[nodiscard]] plan_t make_plan(const options_t& options);
