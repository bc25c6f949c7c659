#include "cli/reporting/json_report.h"

#include "cli/reporting/json_record.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <system_error>

namespace {

[[noreturn]] void throw_unwritable(const std::string& name) {
    throw std::system_error(errno, std::generic_category(), "cannot write " + name);
}

// Whether a file may be a log. A pipe has no beginning to look at.
bool may_be_log(const std::string& path) {
    std::error_code unknown;
    if (!std::filesystem::is_regular_file(path, unknown))
        return true;
    std::ifstream file(path, std::ios::binary);
    std::string beginning(16, '\0');
    file.read(beginning.data(), static_cast<std::streamsize>(beginning.size()));
    beginning.resize(static_cast<std::size_t>(file.gcount()));
    return begins_like_log(beginning);
}

// The last line of a run that the power left is not whole. A pipe has no end to look at.
bool ends_within_line(const std::string& path) {
    std::error_code unknown;
    if (!std::filesystem::is_regular_file(path, unknown))
        return false;
    std::ifstream log(path, std::ios::binary | std::ios::ate);
    if (!log || log.tellg() <= 0)
        return false;
    log.seekg(-1, std::ios::end);
    return log.get() != '\n';
}

} // namespace

std::unique_ptr<result_sink> json_report::on_standard_output() {
    const std::shared_ptr<std::ostream> not_owned(&std::cout, [](std::ostream*) {});
    return std::make_unique<json_report>(not_owned, "standard output");
}

std::unique_ptr<result_sink> json_report::in_file(const std::string& path) {
    if (!may_be_log(path))
        throw std::runtime_error("cannot append to " + path + ": it is no log of this program");
    const bool is_torn = ends_within_line(path);
    auto log = std::make_shared<std::ofstream>(path, std::ios::binary | std::ios::app);
    if (!*log)
        throw_unwritable(path);
    if (is_torn)
        *log << '\n';
    return std::make_unique<json_report>(std::move(log), path);
}

void json_report::take(const result_t& result, const tally&) {
    write_line(json_of(result));
}

void json_report::finish(ending_t ending, const tally& sum) {
    write_line(json_of(ending, sum));
}

void json_report::write_line(const std::string& line) {
    if (!(*m_stream << line + '\n' << std::flush))
        throw_unwritable(m_name);
}
