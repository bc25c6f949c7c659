#pragma once

#include "cli/job.h"

#include <set>
#include <string>
#include <vector>

// What a worker may still do once a stranger's file is open: read the raw files, write below the folders of
// the TIFFs and the temporary folder, and make the system calls that a conversion takes. It holds for all the
// files of a run, since a process can only ever give up more. What the kernel does not have is left out.
class containment final {
public:
    // The jobs make the folders of their outputs below `made_folder`, which is there; where it is empty they
    // make none, and a folder that is missing is none to write to.
    containment(const std::vector<job_t>& jobs, const std::string& made_folder,
                const std::string& temporary_folder);

    // Contains this process, which must have one thread, for the rest of its life. Answers what does it:
    // "contained by Landlock and a filter of system calls".
    [[nodiscard]] std::string enter() const;

private:
    std::set<std::string> m_read;    // folders, and files that links lead to
    std::set<std::string> m_written; // folders
};
