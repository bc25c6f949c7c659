#pragma once

#include "classlib/strings/ZString.h"

#include <cstdint>
#include <memory>

class ZKV;
class ZKVString;

// A fixed-size array of byte strings, without spare capacity. A count below 1 is kept as it was given, and
// means no elements.
class ZStringArray final {
public:
    ZStringArray() noexcept = default;

    // That many empty strings.
    explicit ZStringArray(int n_elements);
    ZStringArray(const ZStringArray& other);
    ZStringArray(ZStringArray&& other) noexcept;

    // The values of a string entry; throws ZKVDException for an entry of another type.
    explicit ZStringArray(const ZKV& kv);
    ~ZStringArray() = default;

    // A deep copy. The old elements are released first: a failure leaves no elements.
    ZStringArray& operator=(const ZStringArray& other);
    ZStringArray& operator=(ZStringArray&& other) noexcept;

    [[nodiscard]] int inq_n_elements() const noexcept { return m_n_elements; }

    // Keeps the first elements, and adds empty ones at the end. A failure changes nothing.
    void set_n_elements(int n_elements);

    // The element at an index. One outside the array is a misuse and gives an empty string that belongs to no
    // array; what is written to it is gone with the next misuse.
    [[nodiscard]] const ZString& operator[](int i) const;
    [[nodiscard]] ZString& operator[](int i);

    // Whether both have the same number of elements, equal one by one.
    [[nodiscard]] bool operator==(const ZStringArray& other) const noexcept;

    // Takes over the values of a string entry. Throws ZKVDException for an entry of another type, which
    // leaves no elements.
    void assign_from(const ZKV& kv);

    // A new entry with these values, which the caller deletes.
    [[nodiscard]] ZKVString* make_kv(const ZString& key) const;

private:
    [[nodiscard]] ZString& inq_element(int i) const;
    void clear() noexcept;
    void copy_from(const ZStringArray& other);

    std::int32_t m_n_elements = 0;
    std::unique_ptr<ZString[]> m_elements;
};
