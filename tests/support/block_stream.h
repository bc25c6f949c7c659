#pragma once

#include "classlib/streams/ZRStream.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

// Reads bytes that someone else keeps, in blocks of given sizes, taken in turn. Each block is a copy of
// exactly its size, gone with the next one: a sanitizer sees every byte read outside it.
class block_stream final : public ZRStream {
public:
    block_stream(std::string_view bytes, std::vector<std::size_t> sizes)
        : m_bytes(bytes), m_sizes(std::move(sizes)) {}

    [[nodiscard]] std::int64_t inq_source_size() const override { return -1; }

    // How often the source was asked for a block.
    [[nodiscard]] int inq_n_fills() const noexcept { return m_n_fills; }

private:
    bool fill_buffer(const unsigned char*& block, int& size) override {
        const std::string_view next =
            m_bytes.substr(0, m_sizes[static_cast<std::size_t>(m_n_fills++) % m_sizes.size()]);
        m_bytes.remove_prefix(next.size());
        m_block = std::make_unique<unsigned char[]>(next.size());
        std::copy(next.begin(), next.end(), m_block.get());
        block = m_block.get();
        size = static_cast<int>(next.size());
        return !next.empty();
    }

    std::string_view m_bytes;
    std::vector<std::size_t> m_sizes;
    std::unique_ptr<unsigned char[]> m_block;
    int m_n_fills = 0;
};
