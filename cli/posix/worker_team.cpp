#include "cli/posix/worker_team.h"

#include "cli/posix/begun_files.h"
#include "cli/posix/folder_of.h"
#include "sdk/open/worker_count.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <string_view>
#include <system_error>
#include <utility>

namespace {

constexpr int most_failed_starts = 3;
constexpr double most_seconds_to_start = 60;
constexpr int milliseconds_between_ticks = 100;
constexpr auto longest_usual_round = std::chrono::seconds(1);

double seconds_since(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// No more workers than files, and all cores for those that there are.
unsigned count_workers(std::size_t jobs, const limits_t& limits) {
    return static_cast<unsigned>(std::clamp<std::size_t>(jobs, 1, limits.workers));
}

} // namespace

worker_team::worker_team(const std::vector<job_t>& jobs, const options_t& options, reports& reports)
    : m_jobs(jobs),
      m_limits(options.limits),
      m_reports(reports),
      m_listeners(options.inq_log()),
      m_bounds(jobs, options.folder, m_folder.inq_path()),
      m_seats(count_workers(jobs.size(), m_limits)),
      m_threads(std::max(sdk_open::inq_worker_count() / count_workers(jobs.size(), m_limits), 1U)) {}

worker_team::~worker_team() {
    for (seat_t& seat : m_seats) {
        if (seat.worker)
            seat.worker->end();
        if (seat.job != nullptr)
            remove_begun_files(folder_of(seat.job->output));
    }
}

ending_t worker_team::run() {
    while (has_job_waiting() || is_at_work()) {
        fill_seats();
        if (!wait_for_news())
            return ending_t::interrupted;
        if (!m_listeners.can_be_told())
            continue;
        give_up_overdue();
        m_reports.tick();
    }
    return m_is_stopping ? ending_t::stopped : ending_t::complete;
}

bool worker_team::is_at_work() const noexcept {
    return std::ranges::any_of(m_seats, [](const seat_t& seat) { return seat.job != nullptr; });
}

void worker_team::fill_seats() {
    unsigned number = 0;
    for (seat_t& seat : m_seats) {
        ++number;
        if (seat.worker || !has_job_waiting())
            continue;
        const worker_settings_t settings{m_folder.make_fresh(number), m_threads, m_limits.memory_bytes};
        seat.worker.emplace(settings, m_bounds);
        seat.is_ready = false;
        seat.start = std::chrono::steady_clock::now();
    }
}

void worker_team::hand_out_job(seat_t& seat) {
    if (!has_job_waiting())
        return;
    const job_t& job = m_jobs[m_next++];
    seat.job = &job;
    seat.start = std::chrono::steady_clock::now();
    if (!seat.worker->send(job))
        replace_ended(seat);
}

// False when the user wants to stop.
bool worker_team::wait_for_news() {
    std::vector<pollfd> news = {{m_signals.inq_descriptor(), POLLIN, 0}};
    const bool takes_messages = m_listeners.can_be_told();
    for (const seat_t& seat : m_seats)
        news.push_back({seat.worker && takes_messages ? seat.worker->inq_descriptor() : -1, POLLIN, 0});
    if (::poll(news.data(), news.size(), milliseconds_between_ticks) < 0 && errno != EINTR)
        throw std::system_error(errno, std::generic_category(), "cannot wait for the workers");
    if (news.front().revents != 0)
        return false;
    forgive_standstill();
    for (std::size_t i = 0; i < m_seats.size(); ++i)
        if (news[i + 1].revents != 0 && m_listeners.can_be_told())
            take_message(m_seats[i]);
    return true;
}

void worker_team::take_message(seat_t& seat) {
    const auto message = seat.worker->receive();
    if (message && !seat.is_ready && message->starts_with(ready_message)) {
        welcome(seat, *message);
        return;
    }
    auto result = message && seat.job != nullptr ? result_of_json(*message) : std::nullopt;
    if (result)
        take_result(seat, std::move(*result));
    else
        replace_ended(seat);
}

void worker_team::welcome(seat_t& seat, const std::string& message) {
    seat.is_ready = true;
    m_failed_starts = 0;
    if (!std::exchange(m_has_told_bounds, true))
        m_reports.note("the workers are " + message.substr(std::string_view(ready_message).size()));
    hand_out_job(seat);
}

void worker_team::take_result(seat_t& seat, result_t result) {
    result.job = *std::exchange(seat.job, nullptr);
    m_is_stopping = m_is_stopping || result.outcome == outcome_t::disk_full;
    report(std::move(result));
    hand_out_job(seat);
}

void worker_team::replace_ended(seat_t& seat) {
    const worker_end_t end = seat.worker->end();
    seat.worker.reset();
    if (seat.job != nullptr)
        fail_job(seat, end.outcome, "the process that converted it ended: " + end.how);
    else if (!seat.is_ready && ++m_failed_starts == most_failed_starts)
        throw std::system_error(ECHILD, std::generic_category(), "worker processes do not start: " + end.how);
}

bool worker_team::is_overdue(const seat_t& seat) const {
    if (seat.job != nullptr)
        return m_limits.seconds > 0 && seconds_since(seat.start) > m_limits.seconds;
    return seat.worker && !seat.is_ready && seconds_since(seat.start) > most_seconds_to_start;
}

// While the program stood still, as between Ctrl-Z and fg, so did its workers: that is no time of theirs.
void worker_team::forgive_standstill() {
    const auto now = std::chrono::steady_clock::now();
    if (const auto round = now - std::exchange(m_last_round, now); round > longest_usual_round)
        for (seat_t& seat : m_seats)
            seat.start += round;
}

// A result that has not been taken yet, because nobody reads what the program tells, came in time.
void worker_team::give_up_overdue() {
    for (seat_t& seat : m_seats) {
        if (!is_overdue(seat) || seat.worker->has_message())
            continue;
        if (seat.job == nullptr) {
            replace_ended(seat);
            continue;
        }
        seat.worker.reset();
        fail_job(seat, outcome_t::timed_out, "it took longer than --timeout allows");
    }
}

// The worker has ended.
void worker_team::fail_job(seat_t& seat, outcome_t outcome, const std::string& reason) {
    const job_t& job = *std::exchange(seat.job, nullptr);
    remove_begun_files(folder_of(job.output));
    result_t result{job, outcome, reason, {}};
    result.seconds = seconds_since(seat.start);
    report(std::move(result));
}

// Memory that no limit keeps from a worker is the system's to give.
void worker_team::report(result_t result) {
    if (result.outcome == outcome_t::over_memory && m_limits.memory_bytes == 0)
        result.outcome = outcome_t::system_failed;
    m_reports.take(result);
}
