#include "classlib/errors/ZKVDException.h"

void ZKVDException::raise() const {
    throw ZKVDException(*this);
}

ZUString ZKVDException::describe() const {
    ZUString text;
    return text << "Error with KVD key '" << m_key << "': " << m_message;
}
