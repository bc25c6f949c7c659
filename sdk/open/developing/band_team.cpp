#include "sdk/open/developing/band_team.h"

#include <algorithm>
#include <system_error>
#include <thread>
#include <vector>

namespace sdk_open {

void band_team::run(unsigned workers, unsigned bands) {
    m_bands = bands;
    m_next_band = 0;
    m_handed_on = 0;
    std::vector<std::jthread> others;
    others.reserve(workers);
    try {
        for (unsigned worker = 1; worker < std::min(workers, bands); ++worker)
            others.emplace_back([this, worker] { work(worker); });
    } catch (const std::system_error&) {
        // Where no more threads are to be had, those that there are do all the work.
    }
    work(0);
    others.clear();
    if (m_problem)
        std::rethrow_exception(m_problem);
}

void band_team::work(unsigned worker) noexcept {
    try {
        for (unsigned band = m_next_band++; band < m_bands; band = m_next_band++)
            work_on(worker, band);
    } catch (...) {
        const std::scoped_lock lock(m_mutex);
        if (!m_problem)
            m_problem = std::current_exception();
        m_next_band = m_bands;
        m_turn.notify_all();
    }
}

void band_team::work_on(unsigned worker, unsigned band) {
    m_make(worker, band);
    {
        std::unique_lock lock(m_mutex);
        m_turn.wait(lock, [&] { return m_handed_on == band || m_problem; });
        if (m_problem)
            return;
    }
    m_hand_on(worker, band);
    const std::scoped_lock lock(m_mutex);
    ++m_handed_on;
    m_turn.notify_all();
}

unsigned inq_worker_count() noexcept {
    return std::max(std::thread::hardware_concurrency(), 1U);
}

} // namespace sdk_open
