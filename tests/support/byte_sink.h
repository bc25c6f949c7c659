#pragma once

#include "classlib/streams/ZWStream.h"

#include <string>

// Keeps what is written to it.
class byte_sink final : public ZWStream {
public:
    bool write_bytes(const void* data, int n) override {
        m_bytes.append(static_cast<const char*>(data), static_cast<std::size_t>(n));
        return true;
    }

    [[nodiscard]] const std::string& inq_bytes() const noexcept { return m_bytes; }

private:
    std::string m_bytes;
};
