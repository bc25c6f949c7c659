#pragma once

#include "classlib/files/ZFileLocation.h"
#include "classlib/files/ZTmpPath.h"

// A place in the temporary folder for a copy of the raw file. The place is chosen at once, the copy is made
// on demand, and deleted at the end if it was made.
class temporary_copy final {
public:
    temporary_copy();
    temporary_copy(const temporary_copy&) = delete;
    temporary_copy& operator=(const temporary_copy&) = delete;
    ~temporary_copy();

    // Copies a file there; false, with nothing left there, when that fails.
    [[nodiscard]] bool make_from(const ZFileLocation& file);

    [[nodiscard]] const ZFileLocation& inq_path() const noexcept { return m_place.inq_path(); }

private:
    ZTmpPath m_place;
    ZUString m_path; // of the copy; empty while there is none
};
