#include "cli/reporting/html_row.h"

#include "cli/reporting/facts_text.h"
#include "cli/reporting/html_text.h"
#include "cli/reporting/number_text.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>

namespace {

std::string cell(const std::string& key, const std::string& content) {
    return R"(<td data-key=")" + html_text(key) + R"(">)" + content + "</td>\n";
}

// The second line of a cell.
std::string small(const std::string& text) {
    return text.empty() ? "" : "<small>" + html_text(text) + "</small>";
}

std::string picture_cell(const result_t& result) {
    if (result.thumbnail.empty())
        return "<td><span class=\"blank\"></span></td>\n";
    return R"(<td><img alt="" src="data:image/jpeg;base64,)" + html_text(result.thumbnail) + "\"></td>\n";
}

std::string file_cell(const result_t& result) {
    const std::filesystem::path path = result.job.input;
    return cell(result.job.input,
                "<b>" + html_text(path.filename().string()) + "</b>" + small(path.parent_path().string()));
}

std::string result_cell(const result_t& result) {
    std::string name(name_of(result.outcome));
    std::ranges::replace(name, '_', ' ');
    const std::string code = std::to_string(code_of(result.outcome));
    return cell(name,
                R"(<span class="outcome">)" + name + "</span>" +
                    small(is_done(result.outcome) ? result.reason : "code " + code + ": " + result.reason));
}

std::string camera_cell(const sdk_open::picture_facts& facts) {
    return cell(facts.camera, html_text(facts.camera) + small(facts.lens));
}

// "1/125 s, f/8"; either may be empty.
std::string joined(const std::string& first, const std::string& second) {
    return first + (first.empty() || second.empty() ? "" : ", ") + second;
}

std::string exposure_cell(const sdk_open::picture_facts& facts) {
    const std::string time = exposure_text(facts);
    const std::string iso = iso_text(facts);
    return cell(time.empty() ? "" : std::to_string(facts.exposure_seconds),
                joined(time, aperture_text(facts)) +
                    small(joined(iso.empty() ? "" : "ISO " + iso, focal_length_text(facts))));
}

std::string size_cell(const sdk_open::picture_facts& facts) {
    const std::string text = size_text(facts);
    return cell(text.empty() ? "" : std::to_string(std::uint64_t{facts.width} * facts.height), text);
}

// The day, and the time below it.
std::string date_cell(const std::string& date_time) {
    const std::size_t end_of_day = std::min(date_time.find(' '), date_time.size());
    return cell(date_time, html_text(date_time.substr(0, end_of_day)) + small(date_time.substr(end_of_day)));
}

std::string time_cell(double seconds) {
    return cell(std::to_string(seconds), seconds > 0 ? fixed(seconds, 2) + " s" : "");
}

} // namespace

std::string html_row(const result_t& result) {
    return "<tr class=\"" + std::string(name_of(result.outcome)) + "\">\n" + picture_cell(result) +
           file_cell(result) + result_cell(result) + camera_cell(result.facts) + exposure_cell(result.facts) +
           size_cell(result.facts) + date_cell(result.facts.date_time) + time_cell(result.seconds) +
           "</tr>\n";
}
