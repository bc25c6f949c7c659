#pragma once

#include "classlib/values/ZKV.h"
#include "classlib/values/ZStringArray.h"

#include <list>

// An entry whose value is one or more strings.
class ZKVString final : public ZKV {
public:
    ZKVString(const ZString& key, const ZString& value);
    ZKVString(const ZString& key, const ZStringArray& values);
    ZKVString(const ZString& key, const std::list<ZString>& values);
    ZKVString(const ZKVString& other) = default;
    ~ZKVString() override = default;

    // Takes over the values; the key stays.
    ZKVString& operator=(const ZKVString& other);

    [[nodiscard]] ZKVString* clone() const override;
    [[nodiscard]] int inq_n_elements() const override;

    [[nodiscard]] const ZStringArray& inq_values() const noexcept { return m_values; }

    // The first value; an empty string when there is none. An entry that holds any other number of values
    // than one is reported as a warning.
    [[nodiscard]] const ZString& inq_string() const;

private:
    ZStringArray m_values;
};
