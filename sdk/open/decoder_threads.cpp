#include "sdk/open/decoder_threads.h"

#include <algorithm>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

// OpenMP's own declarations: its header comes with the compiler, and not with every one.
extern "C" {
int omp_get_max_threads();
void omp_set_num_threads(int count);
}

namespace sdk_open {
namespace {

// Whether so many threads can exist at once besides this one. They end before it returns.
bool can_start(std::size_t count) {
    std::mutex gate;
    std::vector<std::jthread> threads;
    threads.reserve(count);
    const std::lock_guard closed(gate); // until all are there; opens before they are joined
    try {
        while (threads.size() < count)
            threads.emplace_back([&gate] { const std::lock_guard passing(gate); });
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

} // namespace

std::size_t inq_thread_count() noexcept {
    return static_cast<std::size_t>(std::max(1, omp_get_max_threads()));
}

void limit_threads_to_startable() {
    // The system may count a thread for a moment after it has ended, so there must be room for twice as many.
    constexpr std::size_t margin = 2;
    if (!can_start(margin * (inq_thread_count() - 1)))
        omp_set_num_threads(1);
}

} // namespace sdk_open
