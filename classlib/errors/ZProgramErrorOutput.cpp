#include "classlib/errors/ZProgramErrorOutput.h"

#include "classlib/strings/ZUString.h"
#include "platform/console.h"

namespace {

// Both are in place before any code of the process runs.
constinit ZProgramErrorOutput default_output;
constinit ZProgramErrorOutput* current_output = &default_output;

} // namespace

bool ZProgramErrorOutput::assertion_failure(const ZUString& expression, const char* file, int line) {
    ZUString report;
    report << "Warning: Internal program error.  Press Retry or Ignore to continue.\n";
    report << "(Assertion failure at line " << line << " in '" << file << "'";
    report << ", " << expression << ").";
    return show_report(report);
}

bool ZProgramErrorOutput::warning(const ZUString& message, const char* file, int line) {
    ZUString report;
    report << "Warning: Internal program error.  Press Retry or Ignore to continue.\n";
    report << "(at line " << line << " in '" << file << "')";
    if (message.length() > 0)
        report << "\n\n" << message;
    return show_report(report);
}

bool ZProgramErrorOutput::error(const ZUString& message, const char* file, int line) {
    ZUString report;
    report << "Warning: Internal program error.  ";
    report << "The program may crash or become unstable, so you are advised to quit and restart.  ";
    report << "Press Retry or Ignore to attempt to continue.\n";
    report << "(Error at line " << line << " in '" << file << "'";
    if (message.length() > 0)
        report << ", " << message;
    report << ").";
    return show_report(report);
}

bool ZProgramErrorOutput::show_report(const ZUString& report) {
    platform::write_line(report);
    return false;
}

void ZProgramErrorOutput::output(const ZUString& text) {
    platform::write_text(text);
}

void set_program_error_output(ZProgramErrorOutput* output) noexcept {
    current_output = output != nullptr ? output : &default_output;
}

bool program_assertion_failure(const ZUString& expression, const char* file, int line) {
    return current_output->assertion_failure(expression, file, line);
}

bool program_warning(const ZUString& message, const char* file, int line) {
    return current_output->warning(message, file, line);
}

bool program_error(const ZUString& message, const char* file, int line) {
    return current_output->error(message, file, line);
}

void program_output(const ZUString& text) {
    current_output->output(text);
}
