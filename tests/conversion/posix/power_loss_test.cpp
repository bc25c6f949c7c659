#include "conversion/convert_raw_to_tiff.h"
#include "sdk/open/output_options.h"
#include "tests/conversion/posix/crash_model.h"
#include "tests/support/files_fixture.h"

#include <algorithm>

namespace {

using calls_t = std::vector<faulty_system::call_t>;
using faulty_system::naming_t;
using sdk_open::expected_target_t;

class power_loss_test : public files_fixture {
protected:
    power_loss_test() { std::filesystem::copy_file(SAMPLE_FILE, path("raw.cr2")); }
    ~power_loss_test() override { sdk_open::set_expected_target({}); }

    // Converts over an older file, where there is one; answers the calls that it took.
    [[nodiscard]] calls_t record(const std::string& older, naming_t naming) const {
        std::filesystem::remove(path("out.tif"));
        if (!older.empty())
            write("out.tif", older);
        const faulty_system::section section({}, {.naming = naming});
        EXPECT_EQ(convert_raw_to_tiff(file("raw.cr2"), file("out.tif")), 0);
        return section.inq_calls();
    }

    // How many crashes, one after each call, could leave neither the older nor the whole new file. After the
    // last call, only the new one will do.
    [[nodiscard]] int count_losses(const calls_t& calls, const std::string& older) const {
        const std::string whole = read("out.tif").value();
        crash_model model(path("out.tif").string(), older);
        int n_losses = 0;
        for (const faulty_system::call_t& call : calls) {
            model.carry_out(call);
            const auto contents = model.inq_possible_contents();
            n_losses += std::ranges::any_of(contents, [&](const std::string& possible) {
                return possible != older && possible != whole;
            });
        }
        return n_losses + (model.inq_possible_contents() != crash_model::contents_t{whole});
    }
};

TEST_F(power_loss_test, leaves_the_older_file_or_the_whole_new_one) {
    const expected_target_t nothing{std::in_place};
    const struct {
        const char* older;
        expected_target_t expected;
        naming_t naming = naming_t::in_one_step;
    } rows[] = {
        {"", {}},
        {"older", {}},
        {"", nothing},
        {"", nothing, naming_t::by_link},
        {"", nothing, naming_t::unguarded},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        sdk_open::set_expected_target(row.expected);
        const calls_t calls = record(row.older, row.naming);
        EXPECT_EQ(count_losses(calls, row.older), 0);
        std::cout << calls.size() << " moments to lose power at\n";
        // Without any of the flushes something could be lost.
        for (std::size_t i = 0; i < calls.size(); ++i) {
            calls_t fewer = calls;
            fewer.erase(fewer.begin() + static_cast<std::ptrdiff_t>(i));
            EXPECT_TRUE(calls[i].name != "fsync" || count_losses(fewer, row.older) > 0) << i;
        }
    }
}

} // namespace
