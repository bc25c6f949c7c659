#pragma once

#include "classlib/errors/ZProgramErrorOutput.h"
#include "classlib/strings/ZUString.h"
#include "tests/support/shown_text.h"

#include <cstddef>
#include <string>
#include <vector>

// The current reporter as long as it lives; keeps the reports and prints nothing.
class recording_reporter final : public ZProgramErrorOutput {
public:
    recording_reporter() { set_program_error_output(this); }
    ~recording_reporter() { set_program_error_output(nullptr); }

    recording_reporter(const recording_reporter&) = delete;
    recording_reporter& operator=(const recording_reporter&) = delete;

    // Each as "warning 12 ZFile: text".
    [[nodiscard]] const std::vector<std::string>& inq_reports() const noexcept { return m_reports; }

    // All of them as "warning ZFile: text", each followed by ";", and forgets them.
    [[nodiscard]] std::string take_without_lines() {
        std::string texts;
        for (const std::string& report : m_reports) {
            const std::size_t line = report.find(' ');
            texts += report.substr(0, line) + report.substr(report.find(' ', line + 1)) + ';';
        }
        m_reports.clear();
        return texts;
    }

    bool assertion_failure(const ZUString& expression, const char* file, int line) override {
        return record("assertion", expression, file, line);
    }
    bool warning(const ZUString& message, const char* file, int line) override {
        return record("warning", message, file, line);
    }
    bool error(const ZUString& message, const char* file, int line) override {
        return record("error", message, file, line);
    }
    void output(const ZUString& text) override { record("output", text, "", 0); }

private:
    bool record(const std::string& kind, const ZUString& text, const char* file, int line) {
        m_reports.push_back(kind + ' ' + std::to_string(line) + ' ' + file + ": " + plain(text));
        return false;
    }

    std::vector<std::string> m_reports;
};
