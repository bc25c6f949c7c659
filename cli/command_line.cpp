#include "cli/command_line.h"

#include "cli/argument_checks.h"
#include "cli/exit_code.h"
#include "cli/planning/raw_name.h"
#include "cli/reporting/one_line.h"
#include "version.h" // made by CMake

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iostream>
#include <iterator>
#include <map>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr unsigned most_workers = 256;

const std::map<std::string, existing_t> existing_choices = {{"error", existing_t::error},
                                                            {"skip", existing_t::skip},
                                                            {"overwrite", existing_t::overwrite},
                                                            {"newer", existing_t::newer}};

const std::map<std::string, sdk_open::compression_t> compression_choices = {
    {"none", sdk_open::compression_t::none},
    {"deflate", sdk_open::compression_t::deflate},
    {"lzw", sdk_open::compression_t::lzw},
    {"zstd", sdk_open::compression_t::zstd}};

constexpr auto footer =
    R"(Exit status of a single file (RAW alone, RAW TIFF, or -o TIFF RAW): 0 converted, 10 no such raw file,
11 the conversion failed. Of many: 0 everything converted, 1 some inputs are bad, 3 the system failed (disk
full, rights). Of both: 2 wrong usage, 130 interrupted.)";

std::string is_compressible(const std::string& choice) {
    const bool is_there = sdk_open::can_compress(compression_choices.at(choice));
    return is_there ? "" : "the libtiff of this system does not have " + choice;
}

void describe_inputs(CLI::App& program, options_t& options) {
    program
        .add_option("RAW", options.names,
                    "raw files (.cr2, .crw), and folders with -r; RAW TIFF names one raw file and its output")
        ->check(argument_checks::not_empty);
    program.add_flag(
        "-r,--recursive", options.is_recursive,
        "convert the raw files in folders and in the folders below; links to folders are not followed");
    auto* const list = program.add_option("--files-from", options.list,
                                          "read more names from a file, - for standard input, one a line");
    list->check(argument_checks::not_empty);
    program.add_flag("-0,--null", options.is_list_zero_separated, "the names of the list end in zero bytes")
        ->needs(list);
}

void describe_outputs(CLI::App& program, options_t& options) {
    auto* const output =
        program.add_option("-o,--output", options.output, "the TIFF to write, for a single raw file");
    output->check(argument_checks::not_empty)
        ->check(argument_checks::no_raw_name)
        ->check(argument_checks::no_other_file);
    program
        .add_option("-d,--directory", options.folder,
                    "write into this folder instead of beside the raw files; with -r the tree is kept")
        ->check(argument_checks::not_empty)
        ->excludes(output);
    program.add_flag("--preserve-times", options.keeps_modification_times,
                     "give each TIFF the modification time of its raw file");
}

void describe_choices(CLI::App& program, options_t& options) {
    program
        .add_option_function<std::string>(
            "--existing", [&](const std::string& choice) { options.existing = existing_choices.at(choice); },
            "where the TIFF exists: error, skip, overwrite, or newer (overwrite where the raw file is newer, "
            "else skip); error unless the TIFF is named (overwrite) or --resume is given (newer)")
        ->check(CLI::IsMember(existing_choices))
        ->type_name("");
    program
        .add_option_function<std::string>(
            "--compression",
            [&](const std::string& choice) { options.compression = compression_choices.at(choice); },
            "how the pixels are stored: none, deflate, lzw or zstd; none unless given")
        ->check(CLI::IsMember(compression_choices))
        ->check(is_compressible)
        ->type_name("");
}

void describe_workers(CLI::App& program, options_t& options) {
    limits_t& limits = options.limits;
    limits.workers = std::clamp(std::thread::hardware_concurrency(), 1U, most_workers);
    program.add_option("-j,--jobs", limits.workers, "worker processes; one for each core unless given")
        ->check(CLI::Range(1U, most_workers));
    program.add_option("--timeout", limits.seconds, "give up on a file after this many seconds")
        ->check(argument_checks::duration)
        ->type_name("SECONDS");
    program
        .add_option("--memory-limit", limits.memory_bytes,
                    "fail a file that takes more address space than this, for example 2GB")
        ->transform(CLI::AsSizeValue(false))
        ->check(argument_checks::size)
        ->type_name("SIZE");
}

void describe_screen(CLI::App& program, options_t& options) {
    auto* const quiet = program.add_flag_callback(
        "-q,--quiet", [&] { options.verbosity = verbosity_t::quiet; }, "report failures only");
    program
        .add_flag_callback(
            "-v,--verbose", [&] { options.verbosity = verbosity_t::verbose; }, "report every file")
        ->excludes(quiet);
    program.add_flag_callback(
        "--info", [&] { options.task = task_t::describe; },
        "tell what is known of each file, on standard output, and convert nothing");
}

void describe_records(CLI::App& program, options_t& options) {
    program.add_flag("--json", options.has_json,
                     "write a JSON object for each file on standard output, and one for the totals");
    program.add_option("--log", options.log, "append the same lines to a file")
        ->check(argument_checks::not_empty)
        ->check(argument_checks::no_raw_name);
    program.add_option("--report", options.report, "write a page about all files, with small pictures")
        ->check(argument_checks::page_name)
        ->type_name("FILE.html");
    program
        .add_option(
            "--resume", options.resume,
            "do what an earlier run with this log left undone, and go on with the log; failures that may "
            "pass are tried again")
        ->check(argument_checks::not_empty)
        ->check(argument_checks::no_raw_name)
        ->check(argument_checks::regular_file);
}

// The arguments in the order in which the parser takes them, the last one first. It would take "[a,b]" apart
// as two values, where it may be the name of a folder.
std::vector<std::string> reversed_arguments(int argc, char** argv) {
    std::vector<std::string> arguments(std::reverse_iterator(argv + argc), std::reverse_iterator(argv + 1));
    for (std::string& argument : arguments)
        if (argument.starts_with('[') && argument.ends_with(']'))
            argument.insert(0, "./");
    return arguments;
}

// Two names are a raw file and its TIFF, unless the second is a raw file's: that is never an output.
void take_named_output(options_t& options) {
    const bool is_pair = options.task == task_t::convert && options.names.size() == 2 &&
                         options.list.empty() && options.folder.empty() && options.output.empty() &&
                         !options.is_recursive && !has_raw_name(options.names.back());
    if (!is_pair)
        return;
    options.output = options.names.back();
    options.names.pop_back();
    if (const std::string problem = argument_checks::no_other_file(options.output); !problem.empty())
        throw CLI::ValidationError("TIFF", problem);
}

bool says_what_to_write(const options_t& options) {
    return !options.output.empty() || !options.folder.empty() || options.existing ||
           options.keeps_modification_times || options.compression != sdk_open::compression_t::none ||
           !options.log.empty() || !options.resume.empty() || !options.report.empty();
}

void check_combination(const options_t& options) {
    if (options.names.empty() && options.list.empty())
        throw CLI::ValidationError("RAW is required");
    if (!options.output.empty() && !options.is_single())
        throw CLI::ValidationError("-o takes a single raw file, without -r and --files-from");
    if (options.task == task_t::describe && says_what_to_write(options))
        throw CLI::ValidationError("--info writes no files: it goes with inputs, -j, limits and --json only");
}

} // namespace

std::optional<int> read_command_line(int argc, char** argv, options_t& options) {
    CLI::App program("Converts Canon raw files to TIFFs with 16 bits for each channel.", "raw-to-tiff");
    describe_inputs(program, options);
    describe_outputs(program, options);
    describe_choices(program, options);
    describe_workers(program, options);
    describe_screen(program, options);
    describe_records(program, options);
    program.set_version_flag("--version", "raw-to-tiff " + std::string(program_version));
    program.footer(footer);
    try {
        program.parse(reversed_arguments(argc, argv));
        take_named_output(options);
        check_combination(options);
        return {};
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) { // an answer to --help or --version
            program.exit(error);
            return std::cout.flush() ? exit_converted : exit_failed;
        }
        std::cerr << "raw-to-tiff: " + one_line(error.what()) + " (see raw-to-tiff --help)\n";
        return exit_wrong_usage;
    }
}
