#include "cli/command_line.h"
#include "cli/exit_code.h"
#include "cli/options.h"
#include "cli/program.h"
#include "cli/reporting/one_line.h"
#include "platform/process.h"

#include <iostream>
#include <new>
#include <stdexcept>

int main(int argc, char** argv) {
    options_t options;
    try {
        platform::let_writes_fail();
        platform::let_children_be_awaited();
        platform::open_standard_streams();
        if (const auto code = read_command_line(argc, argv, options))
            return *code;
        return run_program(options);
    } catch (const std::bad_alloc&) {
        std::cerr << "raw-to-tiff: not enough memory\n";
    } catch (const std::runtime_error& problem) {
        std::cerr << "raw-to-tiff: " + one_line(problem.what()) + '\n';
    }
    return options.is_single() ? exit_failed : exit_system_failed;
}
