#include "classlib/errors/checks.h"

#include "classlib/errors/ZProgramErrorOutput.h"
#include "classlib/strings/ZUString.h"
#include "platform/debugger.h"

void report_failed_assertion(const char* condition, const char* file, int line) {
    if (program_assertion_failure(condition, file, line))
        platform::break_into_debugger();
}

void report_warning(const ZUString& message, const char* file, int line) {
    if (program_warning(message, file, line))
        platform::break_into_debugger();
}
