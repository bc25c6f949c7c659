#pragma once

#include "classlib/strings/ZString.h"
#include "classlib/values/kvtype.h"

class ZKVString;

// An entry of a key/value data set: a key and a typed value, which derived classes hold. This class itself
// has no value. Legal keys consist of letters, digits and "_"; an illegal one is reported as a warning, and
// kept.
class ZKV {
public:
    ZKV(kvtype_t type, const ZString& key);

    // Of kvtype_none; the key is not examined.
    explicit ZKV(const ZString& key);
    ZKV(const ZKV& other) = default;
    virtual ~ZKV() = default;
    ZKV& operator=(const ZKV& other) = default;

    // A new entry of the same class and contents, which the caller deletes; null for this class.
    [[nodiscard]] virtual ZKV* clone() const;

    // The number of elements of the value; 0 for this class.
    [[nodiscard]] virtual int inq_n_elements() const;

    [[nodiscard]] kvtype_t inq_type() const noexcept { return m_type; }
    [[nodiscard]] const ZString& inq_key() const noexcept { return m_key; }

    // The name of a type in messages, for example "integer number"; "unknown type!!!" beyond kvtype_object.
    [[nodiscard]] static ZString type_name(kvtype_t type);

    // Throws ZKVDException unless the entry has the type and, unless n_elements is 0, that many elements.
    void check_type(kvtype_t type, int n_elements) const;

    // Check the type, with the number of elements, and answer the entry itself. Throws std::bad_cast for an
    // entry of kvtype_string that is no ZKVString.
    [[nodiscard]] const ZKV& as_integer(int n_elements) const { return checked(kvtype_integer, n_elements); }
    [[nodiscard]] const ZKV& as_float(int n_elements) const { return checked(kvtype_float, n_elements); }
    [[nodiscard]] const ZKVString& as_string(int n_elements) const;
    [[nodiscard]] const ZKV& as_binary(int n_elements) const { return checked(kvtype_binary, n_elements); }
    [[nodiscard]] const ZKV& as_kvd(int n_elements) const { return checked(kvtype_kvd, n_elements); }
    [[nodiscard]] const ZKV& as_object() const { return checked(kvtype_object, 1); }
    [[nodiscard]] ZKV& as_integer(int n_elements) { return checked(kvtype_integer, n_elements); }
    [[nodiscard]] ZKV& as_float(int n_elements) { return checked(kvtype_float, n_elements); }
    [[nodiscard]] ZKVString& as_string(int n_elements);
    [[nodiscard]] ZKV& as_binary(int n_elements) { return checked(kvtype_binary, n_elements); }
    [[nodiscard]] ZKV& as_kvd(int n_elements) { return checked(kvtype_kvd, n_elements); }
    [[nodiscard]] ZKV& as_object() { return checked(kvtype_object, 1); }

private:
    [[nodiscard]] const ZKV& checked(kvtype_t type, int n_elements) const;
    [[nodiscard]] ZKV& checked(kvtype_t type, int n_elements);

    kvtype_t m_type;
    ZString m_key;
};
