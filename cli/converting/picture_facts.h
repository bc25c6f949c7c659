#pragma once

#include "cli/result.h"

// Adds camera and size from the TIFF that was written.
void add_picture_facts(result_t& result);
