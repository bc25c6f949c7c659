#pragma once

#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <utility>

namespace sdk_open {

// Works on the bands of a picture with several threads while what they are made of is still coming, and hands
// them on from the first to the last. The threads end before run() returns.
class band_team final {
public:
    // Brings what bands are made of, and calls announce() as it comes.
    using bring_t = std::function<void()>;
    // Makes a band in the memory of a worker; hands it on.
    using band_task_t = std::function<void(unsigned worker, unsigned band)>;

    band_team(bring_t bring, band_task_t make, band_task_t hand_on)
        : m_bring(std::move(bring)), m_make(std::move(make)), m_hand_on(std::move(hand_on)) {}

    // Works with the calling thread as worker 0, which first brings, and as many more as can be started, up
    // to workers in all. Bands are made at the same time, and handed on one at a time and in order. Throws
    // what the tasks throw; the first exception ends the work.
    void run(unsigned workers, unsigned bands);

    // This many bands, from the first on, can now be made.
    void announce(unsigned bands);

private:
    void work(unsigned worker) noexcept;
    void work_on(unsigned worker, unsigned band);
    [[nodiscard]] unsigned take_band();
    void wait_until_at_least(const unsigned& count, unsigned wanted);
    void raise(unsigned& count, unsigned value);
    void keep_problem() noexcept;

    bring_t m_bring;
    band_task_t m_make;
    band_task_t m_hand_on;
    unsigned m_bands = 0;

    std::mutex m_mutex; // guards what follows
    std::condition_variable m_changed;
    unsigned m_taken = 0;
    unsigned m_announced = 0;
    unsigned m_handed_on = 0;
    std::exception_ptr m_problem;
};

} // namespace sdk_open
