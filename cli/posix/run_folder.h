#pragma once

#include "sdk/open/system/file_descriptor.h"

#include <string>

// The temporary folder of a run, with a folder in it for each worker: two conversions that start in the same
// moment would choose the same temporary name. Removes what earlier runs that were killed left behind.
class run_folder final {
public:
    // Throws std::system_error.
    run_folder();
    run_folder(const run_folder&) = delete;
    run_folder& operator=(const run_folder&) = delete;
    ~run_folder();

    [[nodiscard]] const std::string& inq_path() const noexcept { return m_path; }

    // An empty folder for a worker, whatever its predecessor left there. Throws std::system_error.
    [[nodiscard]] std::string make_fresh(unsigned worker) const;

private:
    std::string m_path;
    sdk_open::file_descriptor m_lock; // marks the folder as in use
};
