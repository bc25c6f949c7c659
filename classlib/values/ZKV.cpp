#include "classlib/values/ZKV.h"

#include "classlib/errors/ZKVDException.h"
#include "classlib/errors/checks.h"
#include "classlib/values/ZKVString.h"
#include "platform/characters.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

bool is_key_character(char c) noexcept {
    return platform::is_alnum(c) || c == '_';
}

void check_key(const ZString& key) {
    const std::string_view bytes(key, static_cast<std::size_t>(key.length()));
    if (std::ranges::all_of(bytes, is_key_character))
        return;
    ZUString message;
    message << "Illegal keyname: '" << key << "'.";
    ZWARNING(message);
}

} // namespace

ZKV::ZKV(kvtype_t type, const ZString& key) : m_type(type), m_key(key) {
    check_key(m_key);
}

ZKV::ZKV(const ZString& key) : m_type(kvtype_none), m_key(key) {}

ZKV* ZKV::clone() const {
    return nullptr;
}

int ZKV::inq_n_elements() const {
    return 0;
}

ZString ZKV::type_name(kvtype_t type) {
    switch (type) {
    case kvtype_integer:
        return "integer number";
    case kvtype_float:
        return "floating point number";
    case kvtype_string:
        return "string";
    case kvtype_binary:
        return "binary data";
    case kvtype_kvd:
        return "KVD";
    case kvtype_object:
        return "ZObject pointer";
    default:
        return "unknown type!!!";
    }
}

void ZKV::check_type(kvtype_t type, int n_elements) const {
    ZUString message;
    if (m_type != type)
        message << "Wrong type '" << type_name(m_type) << "', expected type '" << type_name(type) << "'";
    else if (n_elements != 0 && inq_n_elements() != n_elements)
        message << "Wrong number of elements '" << inq_n_elements() << "', expected '" << n_elements << "'";
    else
        return;
    throw ZKVDException(m_key, message);
}

const ZKV& ZKV::checked(kvtype_t type, int n_elements) const {
    check_type(type, n_elements);
    return *this;
}

ZKV& ZKV::checked(kvtype_t type, int n_elements) {
    check_type(type, n_elements);
    return *this;
}

const ZKVString& ZKV::as_string(int n_elements) const {
    return dynamic_cast<const ZKVString&>(checked(kvtype_string, n_elements));
}

ZKVString& ZKV::as_string(int n_elements) {
    return dynamic_cast<ZKVString&>(checked(kvtype_string, n_elements));
}
