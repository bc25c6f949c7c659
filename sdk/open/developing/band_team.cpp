#include "sdk/open/developing/band_team.h"

#include <algorithm>
#include <system_error>
#include <thread>
#include <vector>

namespace sdk_open {
namespace {

// Ends the work of a thread when another has a problem.
struct stopped {};

} // namespace

void band_team::run(unsigned workers, unsigned bands) {
    m_bands = bands;
    std::vector<std::jthread> others;
    others.reserve(workers);
    try {
        for (unsigned worker = 1; worker < std::min(workers, bands); ++worker)
            others.emplace_back([this, worker] { work(worker); });
    } catch (const std::system_error&) {
        // Where no more threads are to be had, those that there are do all the work.
    } catch (...) {
        keep_problem(); // it ends those that were started, which wait for what will not be brought
        throw;
    }
    work(0);
    others.clear();
    if (m_problem)
        std::rethrow_exception(m_problem);
}

void band_team::announce(unsigned bands) {
    raise(m_announced, bands);
}

void band_team::work(unsigned worker) noexcept {
    try {
        if (worker == 0)
            m_bring();
        for (unsigned band = take_band(); band < m_bands; band = take_band())
            work_on(worker, band);
    } catch (const stopped&) {
        // The problem is another thread's.
    } catch (...) {
        keep_problem();
    }
}

// The exception that is being handled, if it is the first.
void band_team::keep_problem() noexcept {
    const std::scoped_lock lock(m_mutex);
    if (!m_problem)
        m_problem = std::current_exception();
    m_changed.notify_all();
}

void band_team::work_on(unsigned worker, unsigned band) {
    wait_until_at_least(m_announced, band + 1);
    m_make(worker, band);
    wait_until_at_least(m_handed_on, band);
    m_hand_on(worker, band);
    raise(m_handed_on, band + 1);
}

unsigned band_team::take_band() {
    const std::scoped_lock lock(m_mutex);
    return m_taken++;
}

void band_team::wait_until_at_least(const unsigned& count, unsigned wanted) {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return count >= wanted || m_problem; });
    if (m_problem)
        throw stopped();
}

void band_team::raise(unsigned& count, unsigned value) {
    const std::scoped_lock lock(m_mutex);
    if (count == value)
        return; // most rows that are decoded complete no band: nobody is woken for them
    count = value;
    m_changed.notify_all();
}

} // namespace sdk_open
