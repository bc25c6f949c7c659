#include "conversion/convert_raw_to_tiff.h"
#include "tests/conversion/posix/crash_model.h"
#include "tests/support/files_fixture.h"

#include <algorithm>

namespace {

using calls_t = std::vector<faulty_system::call_t>;

class power_loss_test : public files_fixture {
protected:
    power_loss_test() { std::filesystem::copy_file(SAMPLE_FILE, path("raw.cr2")); }

    // Converts over an older file, where there is one; answers the calls that it took.
    [[nodiscard]] calls_t record(const std::string& older) const {
        if (!older.empty())
            write("out.tif", older);
        const faulty_system::section section({});
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
    for (const char* const older : {"", "older"}) {
        const calls_t calls = record(older);
        EXPECT_EQ(count_losses(calls, older), 0) << older;
        std::cout << calls.size() << " moments to lose power at\n";
        // Without any of the flushes something could be lost.
        for (std::size_t i = 0; i < calls.size(); ++i) {
            calls_t fewer = calls;
            fewer.erase(fewer.begin() + static_cast<std::ptrdiff_t>(i));
            EXPECT_TRUE(calls[i].name != "fsync" || count_losses(fewer, older) > 0) << older << i;
        }
    }
}

} // namespace
