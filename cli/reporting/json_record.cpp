#include "cli/reporting/json_record.h"

#include "cli/reporting/facts_json.h"
#include "cli/reporting/tally.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>

namespace {

using json_t = nlohmann::ordered_json;

std::string json_text(const json_t& json) {
    return json.dump(-1, ' ', false, json_t::error_handler_t::replace);
}

double rounded(double seconds) {
    return std::round(seconds * 1000) / 1000;
}

std::string_view name_of(ending_t ending) noexcept {
    switch (ending) {
    case ending_t::complete:
        return "complete";
    case ending_t::interrupted:
        return "interrupted";
    case ending_t::stopped:
        return "stopped";
    }
    return {};
}

// Answers what the reading of an object makes; nothing where the text is no such object.
template <typename Read>
auto read_object(std::string_view text, Read read) -> decltype(read(json_t())) {
    try {
        return read(json_t::parse(text));
    } catch (const json_t::exception&) {
        return {};
    }
}

json_t object_of(const result_t& result) {
    json_t json = {{"input", result.job.input},
                   {"output", result.job.output},
                   {"outcome", name_of(result.outcome)},
                   {"code", code_of(result.outcome)},
                   {"reason", result.reason}};
    add_facts(json, result.facts);
    if (result.modification_time)
        json["modified"] = *result.modification_time;
    json["seconds"] = rounded(result.seconds);
    return json;
}

} // namespace

std::string json_of(const result_t& result) {
    return json_text(object_of(result));
}

std::string message_of(const result_t& result) {
    json_t json = object_of(result);
    json["thumbnail"] = result.thumbnail;
    return json_text(json);
}

std::optional<result_t> result_of_json(std::string_view line) {
    return read_object(line, [](const json_t& json) -> std::optional<result_t> {
        const auto outcome = outcome_named(json.at("outcome").get<std::string>());
        if (!outcome)
            return {};
        result_t result;
        json.at("input").get_to(result.job.input);
        json.at("output").get_to(result.job.output);
        result.outcome = *outcome;
        json.at("reason").get_to(result.reason);
        result.facts = facts_of_json(json);
        result.thumbnail = json.value("thumbnail", "");
        if (const auto time = json.find("modified"); time != json.end())
            result.modification_time = time->get<double>();
        result.seconds = json.at("seconds");
        return result;
    });
}

std::string json_of(ending_t ending, const tally& sum) {
    json_t json = {{"files", sum.inq_files()},
                   {"converted", sum.inq_converted()},
                   {"skipped", sum.inq_skipped()},
                   {"failed", sum.inq_failed()},
                   {"left", sum.inq_left()},
                   {"megapixels", rounded(sum.inq_megapixels())},
                   {"seconds", rounded(sum.inq_seconds())},
                   {"ending", name_of(ending)}};
    return json_text({{"sum", std::move(json)}});
}

// A brace alone is what other JSON begins with. Zeros are what a loss of power leaves of a line that had
// found its place on the medium, but not come there.
bool begins_like_log(std::string_view text) noexcept {
    constexpr std::string_view beginnings[] = {R"({"input":")", R"({"sum":{)"};
    const std::string_view line = text.substr(0, text.find('\n'));
    const bool is_lost = !line.empty() && line.find_first_not_of('\0') == std::string_view::npos;
    return text.empty() || is_lost || std::ranges::any_of(beginnings, [line](std::string_view beginning) {
               return line.starts_with(beginning) || (line.size() > 1 && beginning.starts_with(line));
           });
}

std::string json_of(const job_t& job) {
    return json_text({{"input", job.input},
                      {"output", job.output},
                      {"task", job.task},
                      {"existing", job.existing},
                      {"makes_folders", job.makes_folders},
                      {"keeps_modification_time", job.keeps_modification_time},
                      {"has_thumbnail", job.has_thumbnail},
                      {"compression", job.compression}});
}

std::optional<job_t> job_of_json(std::string_view text) {
    return read_object(text, [](const json_t& json) -> std::optional<job_t> {
        job_t job;
        json.at("input").get_to(job.input);
        json.at("output").get_to(job.output);
        json.at("task").get_to(job.task);
        json.at("existing").get_to(job.existing);
        json.at("makes_folders").get_to(job.makes_folders);
        json.at("keeps_modification_time").get_to(job.keeps_modification_time);
        json.at("has_thumbnail").get_to(job.has_thumbnail);
        json.at("compression").get_to(job.compression);
        return job;
    });
}
