#pragma once

#include <atomic>
#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>

namespace sdk_open {

// Works on the bands of a picture with several threads, and hands them on from the first to the last. The
// threads end before run() returns.
class band_team final {
public:
    // Makes band number band, in the memory of worker number worker; hands band number band on. Both may
    // throw: the first exception ends the work and comes out of run().
    using make_t = std::function<void(unsigned worker, unsigned band)>;
    using hand_on_t = std::function<void(unsigned worker, unsigned band)>;

    band_team(make_t make, hand_on_t hand_on) noexcept
        : m_make(std::move(make)), m_hand_on(std::move(hand_on)) {}

    // Works with the calling thread as worker 0 and as many more as can be started, up to workers in all.
    // Bands are made at the same time, and handed on one at a time and in order.
    void run(unsigned workers, unsigned bands);

private:
    void work(unsigned worker) noexcept;
    void work_on(unsigned worker, unsigned band);

    make_t m_make;
    hand_on_t m_hand_on;
    unsigned m_bands = 0;
    std::atomic<unsigned> m_next_band = 0;
    std::mutex m_mutex; // guards what follows
    std::condition_variable m_turn;
    unsigned m_handed_on = 0;
    std::exception_ptr m_problem;
};

// How many workers the machine has room for: at least 1.
[[nodiscard]] unsigned inq_worker_count() noexcept;

} // namespace sdk_open
