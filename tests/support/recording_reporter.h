#pragma once

#include "classlib/errors/ZProgramErrorOutput.h"
#include "classlib/strings/ZUString.h"
#include "tests/support/shown_text.h"

#include <utility>

// The current reporter as long as it lives; keeps the failed checks and the warnings, and prints nothing.
class recording_reporter final : public ZProgramErrorOutput {
public:
    recording_reporter() { set_program_error_output(this); }
    recording_reporter& operator=(recording_reporter&&) = delete;
    ~recording_reporter() { set_program_error_output(nullptr); }

    // The reports since the last time, each as "warning ZFile: text;".
    [[nodiscard]] std::string take() { return std::exchange(m_reports, {}); }

    bool assertion_failure(const ZUString& expression, const char* file, int /*line*/) override {
        m_reports += std::string("assertion ") + file + ": " + plain(expression) + ';';
        return false;
    }
    bool warning(const ZUString& message, const char* file, int /*line*/) override {
        m_reports += std::string("warning ") + file + ": " + plain(message) + ';';
        return false;
    }

private:
    std::string m_reports;
};
