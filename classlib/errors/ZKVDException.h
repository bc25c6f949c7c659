#pragma once

#include "classlib/errors/ZException.h"
#include "classlib/strings/ZString.h"

// A key/value entry is not what its reader demands. Its id is "ZKVD", its code 0.
class ZKVDException final : public ZException {
public:
    ZKVDException(const ZString& key, const ZUString& message)
        : ZException("ZKVD", 0), m_key(key), m_message(message) {}

    [[noreturn]] void raise() const override;

    // "Error with KVD key '", the key, "': " and the message.
    [[nodiscard]] ZUString describe() const override;

    [[nodiscard]] const ZString& inq_key() const noexcept { return m_key; }
    [[nodiscard]] const ZUString& inq_message() const noexcept { return m_message; }

private:
    ZString m_key;
    ZUString m_message;
};
