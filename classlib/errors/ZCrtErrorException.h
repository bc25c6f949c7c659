#pragma once

#include "classlib/errors/ZException.h"
#include "classlib/files/ZFileLocation.h"

// A call of the C runtime failed. Its id is "CRTERROR", its code the value of errno when it was constructed,
// so it is constructed right after the call.
class ZCrtErrorException final : public ZException {
public:
    explicit ZCrtErrorException(const ZFileLocation& file);

    [[noreturn]] void raise() const override;

    // "ZCrtErrorException: " and the runtime's own text for the code; the file is not part of it.
    [[nodiscard]] ZUString describe() const override;

    [[nodiscard]] const ZFileLocation& inq_file() const noexcept { return m_file; }

private:
    ZFileLocation m_file;
};
