#include "classlib/values/ZKVString.h"

#include "classlib/errors/checks.h"
#include "classlib/strings/ZUString.h"

ZKVString::ZKVString(const ZString& key, const ZString& value) : ZKV(kvtype_string, key), m_values(1) {
    m_values[0] = value;
}

ZKVString::ZKVString(const ZString& key, const ZStringArray& values)
    : ZKV(kvtype_string, key), m_values(values) {}

ZKVString::ZKVString(const ZString& key, const std::list<ZString>& values)
    : ZKV(kvtype_string, key), m_values(static_cast<int>(values.size())) {
    int i = 0;
    for (const ZString& value : values)
        m_values[i++] = value;
}

ZKVString& ZKVString::operator=(const ZKVString& other) {
    m_values = other.m_values;
    return *this;
}

ZKVString* ZKVString::clone() const {
    return new ZKVString(*this);
}

int ZKVString::inq_n_elements() const {
    return m_values.inq_n_elements();
}

const ZString& ZKVString::inq_string() const {
    if (inq_n_elements() != 1)
        ZWARNING(ZUString());
    return m_values[0];
}
