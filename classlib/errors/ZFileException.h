#pragma once

#include "classlib/errors/ZException.h"
#include "classlib/errors/fileerr.h"
#include "classlib/files/ZFileLocation.h"

// Something is wrong with a file. Its id is "FILE", its code the kind.
class ZFileException final : public ZException {
public:
    ZFileException(const ZFileLocation& file, fileerr_t kind) : ZException("FILE", kind), m_file(file) {}

    [[noreturn]] void raise() const override;

    // "ZFileException: Missing file: " and the path, for example.
    [[nodiscard]] ZUString describe() const override;

    [[nodiscard]] const ZFileLocation& inq_file() const noexcept { return m_file; }

private:
    ZFileLocation m_file;
};
