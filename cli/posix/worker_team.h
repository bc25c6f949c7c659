#pragma once

#include "cli/options.h"
#include "cli/posix/listeners.h"
#include "cli/posix/run_folder.h"
#include "cli/posix/stop_signals.h"
#include "cli/posix/worker_process.h"
#include "cli/reporting/reports.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <vector>

// Hands files to worker processes and takes their results in. A worker that ends, hangs or takes too much
// memory costs its own file; another takes its place.
class worker_team final {
public:
    // The jobs and the reports must outlive the team. Throws std::system_error.
    worker_team(const std::vector<job_t>& jobs, const options_t& options, reports& reports);
    worker_team(const worker_team&) = delete;
    worker_team& operator=(const worker_team&) = delete;

    // Kills the workers that are left, and removes what they had begun.
    ~worker_team();

    // Throws std::system_error where it cannot go on.
    [[nodiscard]] ending_t run();

private:
    using time_t = std::chrono::steady_clock::time_point;

    // A place for one worker after another.
    struct seat_t {
        std::optional<worker_process> worker;
        bool is_ready = false;
        const job_t* job = nullptr; // none while it waits for one
        time_t start;               // of the job, or of the worker while it is not ready
    };

    [[nodiscard]] bool has_job_waiting() const noexcept { return !m_is_stopping && m_next < m_jobs.size(); }
    [[nodiscard]] bool is_at_work() const noexcept;
    void fill_seats();
    void hand_out_job(seat_t& seat);
    [[nodiscard]] bool wait_for_news();
    void take_message(seat_t& seat);
    void welcome(seat_t& seat, const std::string& message);
    void take_result(seat_t& seat, result_t result);
    void replace_ended(seat_t& seat);
    void forgive_standstill();
    [[nodiscard]] bool is_overdue(const seat_t& seat) const;
    void give_up_overdue();
    void report(result_t result);
    void fail_job(seat_t& seat, outcome_t outcome, const std::string& reason);

    const std::vector<job_t>& m_jobs;
    limits_t m_limits;
    reports& m_reports;
    listeners m_listeners;
    stop_signals m_signals;
    run_folder m_folder;
    containment m_bounds;
    std::vector<seat_t> m_seats;
    unsigned m_threads; // of each worker
    time_t m_last_round = std::chrono::steady_clock::now();
    std::size_t m_next = 0;
    int m_failed_starts = 0; // one after another
    bool m_has_told_bounds = false;
    bool m_is_stopping = false;
};
