#pragma once

#include "cli/reporting/result_sink.h"

#include <memory>
#include <ostream>
#include <string>
#include <utility>

// A line of JSON for each file and one for the totals, on standard output or at the end of a file. A line is
// written before anything else happens, so that a killed run leaves a log of all that it finished.
class json_report final : public result_sink {
public:
    // The name is that of the stream, for complaints.
    json_report(std::shared_ptr<std::ostream> stream, std::string name)
        : m_stream(std::move(stream)), m_name(std::move(name)) {}

    [[nodiscard]] static std::unique_ptr<result_sink> on_standard_output();

    // Throws std::runtime_error where the file cannot be opened, or holds something other than a log.
    [[nodiscard]] static std::unique_ptr<result_sink> in_file(const std::string& path);

    void take(const result_t& result, const tally& so_far) override;
    void finish(ending_t ending, const tally& sum) override;

private:
    void write_line(const std::string& line);

    std::shared_ptr<std::ostream> m_stream;
    std::string m_name;
};
