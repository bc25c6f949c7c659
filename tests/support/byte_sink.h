#pragma once

#include "classlib/streams/ZWStream.h"

#include <string>
#include <vector>

// Keeps what is written to it, each write by itself; may refuse to take anything more.
class byte_sink final : public ZWStream {
public:
    bool write_bytes(const void* data, int n) override {
        if (m_is_refusing)
            return false;
        m_writes.emplace_back(static_cast<const char*>(data), static_cast<std::size_t>(n));
        m_bytes += m_writes.back();
        return true;
    }

    void refuse() noexcept { m_is_refusing = true; }

    [[nodiscard]] const std::vector<std::string>& inq_writes() const noexcept { return m_writes; }
    [[nodiscard]] const std::string& inq_bytes() const noexcept { return m_bytes; }

private:
    std::vector<std::string> m_writes;
    std::string m_bytes;
    bool m_is_refusing = false;
};
