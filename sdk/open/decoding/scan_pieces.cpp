#include "sdk/open/decoding/scan_pieces.h"

#include <algorithm>
#include <exception>

namespace sdk_open {
namespace {

// How many pairs of pieces there are for each worker: one to work on, and some that lie ready.
constexpr std::size_t pairs_of_a_worker = 3;

// A piece may begin a byte earlier than it would, and then has one more.
constexpr std::size_t usual_size = scan_piece::most_bytes - 1;

} // namespace

scan_pieces::scan_pieces(const lossless_jpeg& jpeg, unsigned workers)
    : m_jpeg(jpeg),
      m_n_pairs(jpeg.scan.size() / usual_size / 2),
      m_pairs(std::min(m_n_pairs, workers * pairs_of_a_worker)) {
    m_helpers.reserve(workers);
    try {
        while (m_helpers.size() + 1 < std::min<std::size_t>(workers, m_n_pairs))
            m_helpers.emplace_back([this] { help(); });
    } catch (const std::exception&) {
        // Where no more threads are to be had, or no memory for them, those that there are do all the work.
        // They wait for pieces to be taken: let out of here, the exception would wait for them forever.
    }
}

scan_pieces::~scan_pieces() {
    const std::scoped_lock lock(m_mutex);
    m_is_ending = true;
    m_changed.notify_all();
}

scan_piece* scan_pieces::take() {
    const std::size_t number = m_n_taken / 2;
    m_start = find_start(m_n_taken);
    if (number >= m_n_pairs)
        return nullptr;
    pair& wanted = pair_at(number);
    std::unique_lock lock(m_mutex);
    if (m_n_done_with != number) {
        m_n_done_with = number;
        m_changed.notify_all();
    }
    while (!wanted.is_decoded || m_n_begun <= number) {
        if (can_begin())
            decode_next(lock);
        else
            m_changed.wait(lock);
    }
    return m_n_taken++ % 2 == 0 ? &wanted.one : &wanted.other;
}

// No piece ends with a byte ff, after which a zero may be stuffed.
std::size_t scan_pieces::find_start(std::size_t piece) const noexcept {
    std::size_t start = piece * usual_size;
    while (start > 0 && m_jpeg.scan[start - 1] == std::byte{0xff})
        --start;
    return start;
}

bool scan_pieces::can_begin() const noexcept {
    return m_n_begun < m_n_pairs && m_n_begun < m_n_done_with + m_pairs.size();
}

void scan_pieces::decode_next(std::unique_lock<std::mutex>& lock) noexcept {
    const std::size_t number = m_n_begun++;
    pair& own = pair_at(number);
    own.is_decoded = false;
    lock.unlock();
    own.one.load(m_jpeg.scan, find_start(2 * number), find_start(2 * number + 1));
    own.other.load(m_jpeg.scan, find_start(2 * number + 1), find_start(2 * number + 2));
    scan_piece::decode(own.one, own.other, m_jpeg);
    lock.lock();
    own.is_decoded = true;
    m_changed.notify_all();
}

void scan_pieces::help() noexcept {
    std::unique_lock lock(m_mutex);
    while (!m_is_ending && m_n_begun < m_n_pairs) {
        if (can_begin())
            decode_next(lock);
        else
            m_changed.wait(lock);
    }
}

} // namespace sdk_open
