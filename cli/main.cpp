#include "cli/file_argument.h"
#include "conversion/convert_raw_to_tiff.h"
#include "conversion/edsdk.h"
#include "conversion/pixrerr.h"
#include "conversion/raw_extension.h"
#include "version.h" // made by CMake

#include <CLI/CLI.hpp>

#include <iostream>
#include <string>
#include <string_view>

namespace {

constexpr int exit_wrong_usage = 2;

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

void report(const std::string& file, std::string_view reason) {
    std::cerr << "raw-to-tiff: " << file << ": " << reason << '\n';
}

std::string_view reason_of(int code, const ZFileLocation& raw) {
    if (code == pixrerr_missing_file)
        return "no such file";
    if (!has_raw_extension(raw))
        return "not a .cr2 or .crw file";
    const std::string_view reason = inq_sdk_failure_reason();
    return reason.empty() ? "not enough memory" : reason;
}

int convert(const arguments_t& arguments) {
    const auto raw = locate(arguments.raw);
    const auto tiff = locate(arguments.tiff);
    if (!raw || !tiff) {
        report(raw ? arguments.tiff : arguments.raw, "the name is not UTF-8, or holds a backslash");
        return pixrerr_failed;
    }
    const int code = convert_raw_to_tiff(*raw, *tiff);
    if (code != pixrerr_ok)
        report(arguments.raw, reason_of(code, *raw));
    return code;
}

} // namespace

int main(int argc, char** argv) {
    CLI::App program("Converts a Canon raw file to a TIFF with 16 bits for each channel.", "raw-to-tiff");
    arguments_t arguments;
    describe_usage(program, arguments);
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) // an answer to --help or --version
            return program.exit(error);
        std::cerr << "raw-to-tiff: " << error.what() << " (see raw-to-tiff --help)\n";
        return exit_wrong_usage;
    }
    return convert(arguments);
}
