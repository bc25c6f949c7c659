#include "classlib/errors/ZCrtErrorException.h"

#include <cerrno>
#include <cstring>

// The base comes first, so errno is read before the location is copied.
ZCrtErrorException::ZCrtErrorException(const ZFileLocation& file)
    : ZException("CRTERROR", errno), m_file(file) {}

void ZCrtErrorException::raise() const {
    throw ZCrtErrorException(*this);
}

ZUString ZCrtErrorException::describe() const {
    ZUString text;
    return text << "ZCrtErrorException: " << std::strerror(inq_code());
}
