#include "cli/program.h"

#include "cli/converting/conversion_run.h"
#include "cli/exit_code.h"
#include "cli/planning/plan.h"
#include "cli/reporting/html_report.h"
#include "cli/reporting/info_report.h"
#include "cli/reporting/json_report.h"
#include "cli/reporting/one_line.h"
#include "cli/reporting/single_report.h"
#include "cli/reporting/text_report.h"
#include "cli/terminal.h"

#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace fs = std::filesystem;

namespace {

void complain(std::string_view problem) {
    std::cerr << "raw-to-tiff: " + one_line(problem) + '\n';
}

// Answers the exit code where there can be no such folder.
std::optional<int> make_output_folder(const std::string& folder) {
    std::error_code error;
    if (folder.empty() || fs::is_directory(folder, error))
        return {};
    if (fs::exists(folder, error)) {
        complain(folder + ": not a folder");
        return exit_wrong_usage;
    }
    if (fs::create_directories(folder, error); error) {
        complain(folder + ": cannot make the folder: " + error.message());
        return exit_system_failed;
    }
    return {};
}

// Answers nothing, and complains, where a list or a log cannot be read, or one file is to be two things.
std::optional<plan_t> make_sound_plan(const options_t& options) {
    try {
        plan_t plan = make_plan(options);
        for (const std::string& conflict : plan.conflicts)
            complain(conflict);
        return plan.conflicts.empty() ? std::optional(std::move(plan)) : std::nullopt;
    } catch (const std::system_error& problem) {
        complain(problem.what());
        return {};
    }
}

// The lines of JSON would break a bar on the same terminal.
progress_form_t progress_form(const options_t& options) {
    return options.has_json && terminal::has_standard_output() ? progress_form_t::lines
                                                               : progress_form_t::bar;
}

void add_sinks(reports& reports, const options_t& options) {
    if (options.task == task_t::describe) {
        reports.add(std::make_unique<info_report>(options.has_json ? info_form_t::json : info_form_t::text));
        return;
    }
    if (options.is_single())
        reports.add(std::make_unique<single_report>(options.verbosity));
    else
        reports.add(std::make_unique<text_report>(options.verbosity, progress_form(options)));
    if (options.has_json)
        reports.add(json_report::on_standard_output());
    if (!options.inq_log().empty())
        reports.add(json_report::in_file(options.inq_log()));
    if (!options.report.empty())
        reports.add(std::make_unique<html_report>(options.report));
}

// What cannot be reported, or done at all, ends the run; the reports that still work learn of it.
ending_t carry_out(const plan_t& plan, const options_t& options, reports& reports) {
    try {
        for (const result_t& result : plan.settled)
            reports.take(result);
        const ending_t ending = convert_all(plan, options, reports);
        reports.finish(ending);
        return ending;
    } catch (const std::runtime_error& problem) {
        reports.abandon();
        complain(problem.what());
        return ending_t::stopped;
    }
}

int exit_code_of_one(ending_t ending, const tally& sum) {
    if (ending == ending_t::interrupted)
        return exit_interrupted;
    return ending == ending_t::stopped ? exit_failed : code_of(sum.inq_last_outcome());
}

int exit_code_of_many(ending_t ending, const tally& sum) {
    if (ending == ending_t::interrupted)
        return exit_interrupted;
    if (ending == ending_t::stopped || sum.has_system_failure())
        return exit_system_failed;
    return sum.inq_failed() > 0 ? exit_bad_inputs : exit_converted;
}

} // namespace

int run_program(const options_t& options) {
    const auto plan = make_sound_plan(options);
    if (!plan)
        return exit_wrong_usage;
    if (const auto code = make_output_folder(options.folder))
        return *code;
    reports reports(plan->jobs.size() + plan->settled.size());
    try {
        add_sinks(reports, options);
    } catch (const std::runtime_error& problem) {
        complain(problem.what());
        return exit_wrong_usage;
    }
    const ending_t ending = carry_out(*plan, options, reports);
    const tally& sum = reports.inq_tally();
    return options.is_single() ? exit_code_of_one(ending, sum) : exit_code_of_many(ending, sum);
}
