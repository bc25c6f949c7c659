#pragma once

class ZUString;

// The reporter of program errors: failed checks, warnings and errors, and a plain output channel. This class
// is the default reporter, which prints on standard output; a derived class may show the reports in another
// way.
//
// Each report gives the source file by its name without folders and extension, and the line. The operations
// that answer a bool ask with true for a debugger break at the place that reports.
//
// The order of the virtual operations is fixed, and there is no virtual destructor among them: the library
// never deletes a reporter.
class ZProgramErrorOutput {
public:
    virtual bool assertion_failure(const ZUString& expression, const char* file, int line);
    virtual bool warning(const ZUString& message, const char* file, int line);
    virtual bool error(const ZUString& message, const char* file, int line);

    // What the three reports above end in: writes the report and a line end on standard output; answers
    // false.
    virtual bool show_report(const ZUString& report);

    // Writes a text as it is on standard output.
    virtual void output(const ZUString& text);
};

// Makes a reporter the current one of the process; null brings the default reporter back. The caller keeps
// the ownership, and replaces the reporter while no other thread can report.
void set_program_error_output(ZProgramErrorOutput* output) noexcept;

// The current reporter's operations of the same names.
bool program_assertion_failure(const ZUString& expression, const char* file, int line);
bool program_warning(const ZUString& message, const char* file, int line);
bool program_error(const ZUString& message, const char* file, int line);
void program_output(const ZUString& text);
