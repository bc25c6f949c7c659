#include "cli/reporting/html_report.h"

#include "cli/reporting/html_row.h"
#include "cli/reporting/html_text.h"
#include "cli/reporting/progress.h"
#include "platform/stop_delay.h"
#include "platform/unnamed_file.h"
#include "report_page.h" // made by CMake
#include "sdk/open/failure.h"
#include "sdk/open/system/input_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <span>
#include <stdexcept>
#include <system_error>

namespace {

constexpr std::string_view sum_mark = "<!-- sum -->";
constexpr std::string_view rows_mark = "<!-- rows -->";
constexpr std::size_t sum_at = report_page.find(sum_mark);
constexpr std::size_t rows_at = report_page.find(rows_mark);
static_assert(sum_at < rows_at && rows_at != std::string_view::npos);

// By which a page of an earlier run is known.
constexpr std::string_view page_mark = R"(<meta name="generator" content="raw-to-tiff">)";
constexpr std::size_t part_with_mark = 1024; // bytes at the page's start
static_assert(report_page.substr(0, part_with_mark).find(page_mark) != std::string_view::npos);

constexpr std::string_view before_sum = report_page.substr(0, sum_at);
constexpr std::string_view before_rows =
    report_page.substr(sum_at + sum_mark.size(), rows_at - sum_at - sum_mark.size());
constexpr std::string_view after_rows = report_page.substr(rows_at + rows_mark.size());

[[noreturn]] void throw_rows_lost() {
    throw std::system_error(errno, std::generic_category(), "cannot keep the rows of the report");
}

bool has_mark(std::span<const std::byte> beginning) {
    const auto mark = std::as_bytes(std::span(page_mark));
    return std::search(beginning.begin(), beginning.end(), mark.begin(), mark.end()) != beginning.end();
}

// Nobody else's page is replaced, nor one that cannot be looked at.
void check_earlier_page(const std::string& path) try {
    std::error_code unknown;
    if (!std::filesystem::exists(path, unknown))
        return;
    const auto beginning = sdk_open::input_file(path).read_first(part_with_mark);
    if (!beginning.empty() && !has_mark(beginning))
        throw std::runtime_error("cannot replace " + path + ": it is no report of this program");
} catch (const sdk_open::failure& problem) {
    throw std::runtime_error("cannot replace " + path + ": " + problem.what());
}

sdk_open::output_file open_page(const std::string& path,
                                const std::vector<sdk_open::system_calls::file_identity>& raw_files) try {
    check_earlier_page(path);
    return {path, raw_files};
} catch (const sdk_open::failure& problem) {
    throw std::runtime_error(problem.what());
}

} // namespace

html_report::html_report(const std::string& path)
    : m_page(open_page(path, m_no_raw_files)), m_rows(platform::open_unnamed_file()) {
    if (!m_rows)
        throw_rows_lost();
}

void html_report::take(const result_t& result, const tally&) {
    const std::string row = html_row(result);
    if (std::fwrite(row.data(), 1, row.size(), m_rows.get()) != row.size())
        throw_rows_lost();
}

void html_report::finish(ending_t ending, const tally& sum) {
    const platform::stop_delay delay;
    try {
        write(before_sum);
        write(html_text(describe_sum(ending, sum)));
        write(before_rows);
        write_rows();
        write(after_rows);
        m_page.commit();
    } catch (const sdk_open::failure& problem) {
        throw std::runtime_error(problem.what());
    }
}

void html_report::write(std::string_view text) {
    m_page.write_at(m_size, std::as_bytes(std::span(text)));
    m_size += text.size();
}

void html_report::write_rows() {
    if (std::fflush(m_rows.get()) != 0 || std::fseek(m_rows.get(), 0, SEEK_SET) != 0)
        throw_rows_lost();
    std::array<char, 65536> part{};
    while (const std::size_t size = std::fread(part.data(), 1, part.size(), m_rows.get()))
        write({part.data(), size});
    if (std::ferror(m_rows.get()) != 0)
        throw_rows_lost();
}
