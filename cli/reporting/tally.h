#pragma once

#include "cli/result.h"

#include <chrono>
#include <cstddef>
#include <string>

// Counts what becomes of the files of a run.
class tally final {
public:
    explicit tally(std::size_t files) : m_files(files) {}

    void add(const result_t& result);

    [[nodiscard]] std::size_t inq_files() const noexcept { return m_files; }
    [[nodiscard]] std::size_t inq_converted() const noexcept { return m_converted; }
    [[nodiscard]] std::size_t inq_skipped() const noexcept { return m_skipped; }
    [[nodiscard]] std::size_t inq_failed() const noexcept { return m_failed; }
    [[nodiscard]] std::size_t inq_left() const noexcept {
        return m_files - m_converted - m_described - m_skipped - m_failed;
    }
    [[nodiscard]] bool has_system_failure() const noexcept { return m_has_system_failure; }
    [[nodiscard]] outcome_t inq_last_outcome() const noexcept { return m_last_outcome; }
    [[nodiscard]] double inq_megapixels() const noexcept { return m_megapixels; }

    // Since the start of the run.
    [[nodiscard]] double inq_seconds() const noexcept;

    // At the pace so far; 0 while there is none.
    [[nodiscard]] double inq_seconds_left() const noexcept;

    // "IMG_1.CR2: the pixel data end early"; empty while nothing failed.
    [[nodiscard]] const std::string& inq_last_failure() const noexcept { return m_last_failure; }

private:
    std::size_t m_files;
    std::size_t m_converted = 0;
    std::size_t m_described = 0;
    std::size_t m_skipped = 0;
    std::size_t m_failed = 0;
    std::size_t m_timed = 0; // of them, those that took a conversion
    bool m_has_system_failure = false;
    outcome_t m_last_outcome = outcome_t::converted;
    double m_megapixels = 0;
    std::string m_last_failure;
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};
