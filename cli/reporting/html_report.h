#pragma once

#include "cli/reporting/result_sink.h"
#include "sdk/open/system/output_file.h"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// One page that shows all files of a run. It appears whole, at the end of the run, however that ends. The
// rows wait for it in a file without a name: with their pictures, those of a long run are too many for the
// memory.
class html_report final : public result_sink {
public:
    // Throws std::runtime_error where the page cannot be written there, a file other than an earlier page
    // would be replaced, or rows cannot be kept.
    explicit html_report(const std::string& path);

    void take(const result_t& result, const tally& so_far) override;
    void finish(ending_t ending, const tally& sum) override;

private:
    struct closer {
        void operator()(std::FILE* file) const noexcept { std::fclose(file); }
    };

    void write(std::string_view text);
    void write_rows();

    std::vector<sdk_open::system_calls::file_identity> m_no_raw_files;
    sdk_open::output_file m_page;
    std::uint64_t m_size = 0; // of the page
    std::unique_ptr<std::FILE, closer> m_rows;
};
