#pragma once

#include "sdk/open/decoding/scan_piece.h"

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <thread>
#include <vector>

namespace sdk_open {

// Cuts a scan into pieces, and has several threads decode them, some way ahead of whoever takes them. The
// threads end with it.
class scan_pieces final {
public:
    // The calling thread is one of the workers: it decodes when it would have to wait. Up to workers - 1 more
    // are started, fewer where the system has none to give. Throws std::bad_alloc.
    scan_pieces(const lossless_jpeg& jpeg, unsigned workers);
    scan_pieces(const scan_pieces&) = delete;
    scan_pieces& operator=(const scan_pieces&) = delete;
    ~scan_pieces();

    // The next piece, decoded; null when all were taken. It stays until the next call.
    [[nodiscard]] scan_piece* take();

    // Where in the scan that piece begins, or what is left over when all were taken.
    [[nodiscard]] std::size_t inq_start() const noexcept { return m_start; }

private:
    struct pair {
        scan_piece one;
        scan_piece other;
        bool is_decoded = false;
    };

    [[nodiscard]] std::size_t find_start(std::size_t piece) const noexcept;
    [[nodiscard]] pair& pair_at(std::size_t number) noexcept { return m_pairs[number % m_pairs.size()]; }
    [[nodiscard]] bool can_begin() const noexcept;
    void decode_next(std::unique_lock<std::mutex>& lock) noexcept;
    void help() noexcept;

    const lossless_jpeg& m_jpeg;
    std::size_t m_n_pairs;     // that the scan is cut into
    std::size_t m_n_taken = 0; // pieces
    std::size_t m_start = 0;   // of the last one

    std::mutex m_mutex; // guards what follows, but for the pieces of pairs that someone works on
    std::condition_variable m_changed;
    std::vector<pair> m_pairs; // a ring: each pair of pieces in use
    std::size_t m_n_begun = 0; // pairs
    std::size_t m_n_done_with = 0;
    bool m_is_ending = false;
    std::vector<std::jthread> m_helpers;
};

} // namespace sdk_open
