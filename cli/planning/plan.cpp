#include "cli/planning/plan.h"

#include "cli/existing_output.h"
#include "cli/file_argument.h"
#include "cli/modification_time.h"
#include "cli/planning/earlier_run.h"
#include "cli/planning/file_roles.h"
#include "cli/planning/folder_scan.h"
#include "cli/planning/input_names.h"
#include "cli/planning/output_name.h"
#include "cli/planning/raw_name.h"
#include "cli/planning/shared_outputs.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <optional>
#include <utility>

namespace fs = std::filesystem;

namespace {

constexpr auto unusable = "the name is not UTF-8, holds a backslash, is too long, or names no file";

existing_t existing_choice(const options_t& options) {
    if (options.existing)
        return *options.existing;
    if (!options.output.empty())
        return existing_t::overwrite;
    return options.resume.empty() ? existing_t::error : existing_t::newer;
}

// What to say of a name that is neither a raw file's nor a folder's to look into.
result_t refuse(const std::string& name) {
    std::error_code error;
    const fs::file_status status = fs::status(name, error);
    if (!fs::status_known(status))
        return {{name, ""}, outcome_t::system_failed, "cannot look at it: " + error.message(), {}};
    if (!fs::exists(status))
        return {{name, ""}, outcome_t::missing, "there is no such file", {}};
    return {{name, ""}, outcome_t::bad_input, "not a .cr2 or .crw file", {}};
}

// Takes all names in, and sorts out what is there to convert.
class planner final {
public:
    explicit planner(const options_t& options) : m_options(options), m_earlier(options.resume) {}

    void add_name(const input_name_t& name) {
        std::error_code unknown;
        if (m_options.is_recursive && fs::is_directory(name.path, unknown))
            add_folder(name.path);
        else
            add_file({name.path, place_of(name, m_options)});
    }

    [[nodiscard]] plan_t take_plan() {
        m_plan.conflicts = remove_doubles(m_plan.jobs);
        std::ranges::move(find_double_roles(m_options, m_plan.jobs), std::back_inserter(m_plan.conflicts));
        std::vector<job_t> jobs;
        for (job_t& job : std::exchange(m_plan.jobs, {}))
            if (auto result = settle(job))
                m_plan.settled.push_back(std::move(*result));
            else
                m_plan.jobs.push_back(std::move(job));
        return std::move(m_plan);
    }

private:
    void add_folder(const std::string& folder) {
        const folder_scan_t scan = scan_folder(folder);
        for (const std::string& file : scan.raw_files)
            add_file({(fs::path(folder) / file).string(), file});
        for (const auto& [path, why] : scan.unreadable)
            m_plan.settled.push_back(
                {{path, ""}, outcome_t::system_failed, "cannot read the folder: " + why, {}});
    }

    void add_file(const input_place_t& input) {
        if (m_options.is_single() || has_raw_name(input.path))
            m_plan.jobs.push_back(job_for(input));
        else
            m_plan.settled.push_back(refuse(input.path));
    }

    [[nodiscard]] job_t job_for(const input_place_t& input) const {
        if (m_options.task == task_t::describe)
            return {input.path, "", task_t::describe};
        return {input.path,
                output_name(input, m_options),
                task_t::convert,
                existing_choice(m_options),
                !m_options.folder.empty(),
                m_options.keeps_modification_times,
                !m_options.report.empty(),
                m_options.compression};
    }

    [[nodiscard]] std::optional<result_t> settle(const job_t& job) const {
        if (!locate(job.input))
            return result_t{job, outcome_t::bad_input, unusable, {}};
        if (job.task == task_t::describe)
            return {};
        if (!locate(job.output))
            return result_t{job, outcome_t::bad_input, "cannot write " + job.output + ": " + unusable, {}};
        if (auto settled = m_earlier.settle(job))
            return settled;
        auto settled = settle_by_output(job);
        if (settled)
            settled->modification_time = inq_modification_time(job.input);
        return settled;
    }

    const options_t& m_options;
    earlier_run m_earlier;
    plan_t m_plan;
};

} // namespace

plan_t make_plan(const options_t& options) {
    planner planner(options);
    for (const input_name_t& name : read_input_names(options))
        planner.add_name(name);
    return planner.take_plan();
}
