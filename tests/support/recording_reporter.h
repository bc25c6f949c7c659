#pragma once

#include "classlib/errors/ZProgramErrorOutput.h"
#include "classlib/strings/ZUString.h"
#include "tests/support/shown_text.h"

#include <string>
#include <utility>

// The current reporter as long as it lives; keeps the reports and prints nothing.
class recording_reporter final : public ZProgramErrorOutput {
public:
    recording_reporter() { set_program_error_output(this); }
    recording_reporter(const recording_reporter&) = delete;
    recording_reporter& operator=(const recording_reporter&) = delete;
    ~recording_reporter() { set_program_error_output(nullptr); }

    // The reports since the last time, each as "warning ZFile: text;".
    [[nodiscard]] std::string take() { return std::exchange(m_reports, {}); }

    [[nodiscard]] int inq_last_line() const noexcept { return m_last_line; }

    bool assertion_failure(const ZUString& expression, const char* file, int line) override {
        return record("assertion ", expression, file, line);
    }
    bool warning(const ZUString& message, const char* file, int line) override {
        return record("warning ", message, file, line);
    }
    bool error(const ZUString& message, const char* file, int line) override {
        return record("error ", message, file, line);
    }
    void output(const ZUString& text) override { record("output", text, "", 0); }

private:
    bool record(const char* kind, const ZUString& text, const char* file, int line) {
        m_reports += std::string(kind) + file + ": " + plain(text) + ';';
        m_last_line = line;
        return false;
    }

    std::string m_reports;
    int m_last_line = 0;
};
