#pragma once

#include "classlib/streams/ZRStream.h"

#include <string_view>
#include <utility>
#include <vector>

// Reads bytes that someone else keeps, in blocks of given sizes, taken in turn, and may fail at their end.
// Each block is a copy of exactly its size, gone with the next one: a sanitizer sees every byte read outside
// it. A size of 0 makes an empty block, which no source should hand out.
class block_stream final : public ZRStream {
public:
    block_stream(std::string_view bytes, std::vector<std::size_t> sizes, rstreamerr_t at_end = rstreamerr_ok)
        : m_bytes(bytes), m_sizes(std::move(sizes)), m_at_end(at_end) {}

    [[nodiscard]] std::int64_t inq_source_size() const override { return -1; }

private:
    bool fill_buffer(const unsigned char*& block, int& size) override {
        const bool is_at_end = m_bytes.empty();
        if (is_at_end)
            set_error(m_at_end);
        const std::string_view next = m_bytes.substr(0, m_sizes[m_n_fills++ % m_sizes.size()]);
        m_bytes.remove_prefix(next.size());
        m_block = std::vector<unsigned char>(next.begin(), next.end());
        block = m_block.data();
        size = static_cast<int>(next.size());
        return !is_at_end;
    }

    std::string_view m_bytes;
    std::vector<std::size_t> m_sizes;
    rstreamerr_t m_at_end;
    std::vector<unsigned char> m_block;
    std::size_t m_n_fills = 0;
};
