#include "cli/file_argument.h"
#include "conversion/convert_raw_to_tiff.h"
#include "conversion/edsdk.h"
#include "conversion/pixrerr.h"
#include "conversion/raw_extension.h"
#include "platform/characters.h"
#include "platform/process.h"
#include "version.h" // made by CMake

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iostream>
#include <new>
#include <string>
#include <string_view>

namespace {

constexpr int exit_wrong_usage = 2;
constexpr int exit_failed = pixrerr_failed;

struct arguments_t {
    std::string raw;
    std::string tiff;
};

void describe_usage(CLI::App& program, arguments_t& arguments) {
    const auto is_named = [](const std::string& name) {
        return std::string(name.empty() ? "the name is empty" : "");
    };
    program.add_option("RAW", arguments.raw, "the raw file to read, .cr2 or .crw")
        ->required()
        ->check(is_named);
    program.add_option("TIFF", arguments.tiff, "the TIFF to write; an existing one is replaced")
        ->required()
        ->check(is_named);
    program.set_version_flag("--version", "raw-to-tiff " + std::string(program_version));
    program.footer("Exit status: 0 converted, 2 wrong usage, 10 no such raw file, 11 the conversion failed.");
}

// One line, whatever characters a name holds.
void report(const std::string& file, std::string_view reason) {
    std::string line = "raw-to-tiff: " + file + ": " + std::string(reason);
    std::ranges::replace_if(
        line, [](char c) { return platform::is_control(c); }, '?');
    std::cerr << line << '\n';
}

std::string_view reason_of(int code, const ZFileLocation& raw) {
    if (code == pixrerr_missing_file)
        return "there is no such file, or it cannot be reached";
    if (!has_raw_extension(raw))
        return "not a .cr2 or .crw file";
    const std::string_view reason = inq_sdk_failure_reason();
    return reason.empty() ? "not enough memory" : reason;
}

int convert(const arguments_t& arguments) {
    const auto raw = locate(arguments.raw);
    const auto tiff = locate(arguments.tiff);
    if (!raw || !tiff) {
        report(raw ? arguments.tiff : arguments.raw,
               "the name is not UTF-8, holds a backslash, or names no file");
        return exit_failed;
    }
    const int code = convert_raw_to_tiff(*raw, *tiff);
    if (code != pixrerr_ok)
        report(arguments.raw, reason_of(code, *raw));
    return code;
}

int run(int argc, char** argv) {
    CLI::App program("Converts a Canon raw file to a TIFF with 16 bits for each channel.", "raw-to-tiff");
    arguments_t arguments;
    describe_usage(program, arguments);
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) { // an answer to --help or --version
            program.exit(error);
            return std::cout.flush() ? 0 : exit_failed;
        }
        std::cerr << "raw-to-tiff: " << error.what() << " (see raw-to-tiff --help)\n";
        return exit_wrong_usage;
    }
    return convert(arguments);
}

} // namespace

int main(int argc, char** argv) {
    try {
        platform::let_writes_fail_at_size_limit();
        return run(argc, argv);
    } catch (const std::bad_alloc&) {
        std::cerr << "raw-to-tiff: not enough memory\n";
        return exit_failed;
    }
}
