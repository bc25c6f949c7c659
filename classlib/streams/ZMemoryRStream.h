#pragma once

#include "classlib/streams/ZRStream.h"

// Reads from a block of memory that someone else keeps alive and unchanged.
class ZMemoryRStream final : public ZRStream {
public:
    ZMemoryRStream(const void* bytes, int n) noexcept;

    // The bytes in use of a buffer.
    explicit ZMemoryRStream(const ZData& data) noexcept;

    [[nodiscard]] std::int64_t inq_source_size() const override { return m_n_bytes; }

private:
    bool fill_buffer(const unsigned char*& block, int& size) override;

    int m_n_bytes;
};
