#include "classlib/streams/ZMemoryRStream.h"

#include "classlib/streams/ZData.h"

#include <algorithm>

ZMemoryRStream::ZMemoryRStream(const void* bytes, int n) noexcept : m_n_bytes(std::max(n, 0)) {
    set_buffer(static_cast<const unsigned char*>(bytes), m_n_bytes);
}

ZMemoryRStream::ZMemoryRStream(const ZData& data) noexcept
    : ZMemoryRStream(data.inq_data(), data.inq_n_bytes()) {}

// The one block is there from the beginning.
bool ZMemoryRStream::fill_buffer(const unsigned char*& /*block*/, int& /*size*/) {
    return false;
}
