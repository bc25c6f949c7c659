#include "classlib/errors/ZFileException.h"

namespace {

// The kinds that have a text of their own; the others are described by their number.
const char* kind_text(int code) noexcept {
    switch (code) {
    case fileerr_missing:
        return "Missing file: ";
    case fileerr_open_read:
        return "Failed to open file for reading: ";
    case fileerr_open_write:
        return "Failed to open file for writing: ";
    case fileerr_corrupt:
        return "Corrupt data in file: ";
    default:
        return nullptr;
    }
}

} // namespace

void ZFileException::raise() const {
    throw ZFileException(*this);
}

ZUString ZFileException::describe() const {
    ZUString text;
    text << "ZFileException: ";
    if (const char* kind = kind_text(inq_code()))
        text << kind;
    else
        text << "Unknown error (id=" << inq_code() << ") with file: ";
    return text << m_file.inq_path();
}
