#pragma once

#include <string>

// Removes from a folder the files in the making that no process works on any more, because it was killed.
void remove_begun_files(const std::string& folder);
