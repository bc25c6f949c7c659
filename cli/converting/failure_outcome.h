#pragma once

#include "cli/result.h"

#include <string>

class ZFileLocation;

// Says in a result why the library failed with this code over a raw file.
void explain_failure(result_t& result, int code, const ZFileLocation& raw);

void fail(result_t& result, outcome_t outcome, std::string reason);
