#include "classlib/errors/ZException.h"

void ZException::raise() const {
    throw ZException(*this);
}

ZUString ZException::describe() const {
    ZUString text;
    text << "ZException: " << m_id << ", " << m_code;
    return text;
}

ZException& ZException::set_code(int code) noexcept {
    m_code = code;
    return *this;
}
