#include "classlib/files/ZFileLocation.h"
#include "conversion/convert_raw_to_tiff.h"
#include "tests/conversion/sdk_double.h"
#include "tests/support/allocation_meter.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/temporary_folder_setting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace {

using calls_t = std::vector<std::string>;

constexpr auto end_of_session = "EdsTerminateSDK()";

const calls_t whole_run = {
    "EdsInitializeSDK()",
    "EdsCreateFileStream(RAW, 2, 2) -> #1",
    "EdsCreateImageRef(#1) -> #2",
    "EdsRelease(#1)",
    "EdsCreateFileStream(TIFF, 1, 1) -> #3",
    "EdsSaveImage(#2, 8, #3)",
    "EdsRelease(#3)",
    "EdsRelease(#2)",
    end_of_session,
};

const calls_t whole_run_by_copy = [] {
    calls_t calls = whole_run;
    calls[1] = "EdsCreateFileStream(COPY, 2, 2) -> #1";
    calls.insert(calls.begin() + 1, "EdsCreateFileStream(RAW, 2, 2) -> error 34");
    return calls;
}();

const sdk_double::answers_t not_found_at_first = {{2, eds_file_not_found}};

// What follows when a call fails, by its beginning; the answers of the others are of no interest.
const std::map<std::string_view, calls_t> calls_after_failure = {
    {"EdsInitializeSDK", {end_of_session}},
    {"EdsCreateFileStream(RAW", {end_of_session}},
    {"EdsCreateFileStream(COPY", {end_of_session}},
    {"EdsCreateImageRef", {"EdsRelease(#1)", end_of_session}},
    {"EdsCreateFileStream(TIFF", {"EdsRelease(#2)", end_of_session}},
    {"EdsSaveImage", {"EdsRelease(#3)", "EdsRelease(#2)", end_of_session}},
};

struct expected_t {
    int result;
    calls_t calls;
};

// What becomes of a whole run when the call at an index answers an error.
expected_t when_failing(const calls_t& whole, std::size_t index, eds_error_t error) {
    const auto at = whole.begin() + static_cast<std::ptrdiff_t>(index);
    const auto failure = std::ranges::find_if(
        calls_after_failure, [&](const auto& candidate) { return at->starts_with(candidate.first); });
    const bool is_failure = failure != calls_after_failure.end();
    const calls_t then = is_failure ? failure->second : calls_t(at + 1, whole.end());
    calls_t calls(whole.begin(), at);
    calls.push_back(at->substr(0, at->find(" -> ")) + " -> error " + std::to_string(error));
    calls.insert(calls.end(), then.begin(), then.end());
    return {is_failure ? 11 : 0, calls};
}

ZFileLocation location_of(const fs::path& path) {
    return {path.string<utf16_t>().c_str(), false};
}

class conversion_test : public testing::Test {
protected:
    conversion_test() {
        fs::create_directories(m_temporary);
        write_file(m_raw, m_raw_bytes);
    }

    [[nodiscard]] int convert() const { return convert_raw_to_tiff(location_of(m_raw), location_of(m_tiff)); }

    // The calls with the names of the files for their paths, which the SDK gets as UTF-8 with backslashes.
    [[nodiscard]] calls_t named_calls(const sdk_double& sdk) const {
        calls_t calls = sdk.inq_calls();
        for (const auto& [path, name] : {std::pair(m_raw, "(RAW,"), {m_tiff, "(TIFF,"}, {m_copy, "(COPY,"}}) {
            const std::u8string utf8 = path.u8string();
            std::string argument = '(' + std::string(utf8.begin(), utf8.end()) + ',';
            std::ranges::replace(argument, '/', '\\');
            for (std::string& call : calls)
                if (const std::size_t at = call.find(argument); at != std::string::npos)
                    call.replace(at, argument.size(), name);
        }
        return calls;
    }

    // The temporary folder holds the copy, equal to the raw file, from the call at copied_at until the
    // session ends, and is empty otherwise.
    void check_run(const sdk_double::answers_t& answers, std::size_t copied_at, const expected_t& expected) {
        SCOPED_TRACE("calls that answer errors: " + testing::PrintToString(answers));
        std::size_t n_calls = 0;
        const sdk_double sdk(answers, [&](std::string_view call) {
            const bool is_copied = ++n_calls >= copied_at && !call.starts_with(end_of_session);
            const calls_t names = list_folder(m_temporary);
            ASSERT_EQ(names.size(), is_copied ? 1U : 0U) << call;
            if (!is_copied)
                return;
            EXPECT_TRUE(names[0].starts_with("KW-") && names[0].ends_with(".tiff")) << names[0];
            m_copy = m_temporary / names[0];
            EXPECT_TRUE(read_file(m_copy) == m_raw_bytes) << call;
        });
        EXPECT_EQ(convert(), expected.result);
        EXPECT_EQ(named_calls(sdk), expected.calls);
    }

    const std::string m_raw_bytes = std::string(70000, 'r') + '\0' + "end";
    const scratch_folder m_scratch;
    const fs::path m_folder = m_scratch.inq_path() / u8"Gr\u00FC\u00DFe \u65E5 \U0001F4F7";
    const fs::path m_temporary = m_folder / u8"tmp \u00E4";
    const fs::path m_raw = m_folder / u8"\U0001F4F7 raw.CR2";
    const fs::path m_tiff = m_folder / u8"\u0442 2.tif";
    fs::path m_copy;
    const temporary_folder_setting m_setting{m_temporary};
};

TEST_F(conversion_test, converts_and_cleans_up_whichever_call_fails) {
    constexpr std::size_t never = 1000;
    constexpr std::size_t second_open = 3;
    check_run({}, never, {0, whole_run});
    check_run(not_found_at_first, second_open, {0, whole_run_by_copy});
    for (const eds_error_t error : {eds_file_not_found, 0x8000FFFFU}) {
        for (std::size_t i = 0; i < whole_run.size(); ++i)
            if (i != 1 || error != eds_file_not_found) // which is no failure yet
                check_run({{i + 1, error}}, never, when_failing(whole_run, i, error));
        for (std::size_t i = second_open - 1; i < whole_run_by_copy.size(); ++i)
            check_run({{2, 34}, {i + 1, error}}, second_open, when_failing(whole_run_by_copy, i, error));
    }
}

TEST_F(conversion_test, fails_cleanly_wherever_memory_runs_out) {
    const ZFileLocation raw = location_of(m_raw);
    const ZFileLocation tiff = location_of(m_tiff);
    for (const sdk_double::answers_t& answers : {sdk_double::answers_t(), not_found_at_first}) {
        bool has_failed = true;
        for (int n = 1; has_failed; ++n) {
            SCOPED_TRACE("allocation " + std::to_string(n));
            const sdk_double sdk(answers);
            allocation_meter::section memory(n);
            const int result = convert_raw_to_tiff(raw, tiff);
            memory.stop();

            has_failed = memory.inq_failed();
            EXPECT_EQ(result, has_failed ? 11 : 0);
            EXPECT_EQ(memory.inq_held(), 0);
            EXPECT_EQ(list_folder(m_temporary), calls_t());
            EXPECT_TRUE(has_failed || n > 10) << "too few to mean something";
        }
    }
}

TEST_F(conversion_test, fails_without_a_place_for_the_copy) {
    const temporary_folder_setting setting(m_folder / "missing");
    const sdk_double sdk(not_found_at_first);
    EXPECT_EQ(convert(), 11);
    EXPECT_EQ(named_calls(sdk), when_failing(whole_run, 1, 34).calls);
    EXPECT_FALSE(fs::exists(m_folder / "missing"));
}

TEST_F(conversion_test, does_not_mind_a_copy_that_cannot_be_deleted) {
    const sdk_double sdk(not_found_at_first, [&](std::string_view call) {
        if (call.starts_with("EdsSaveImage")) {
            m_copy = m_temporary / list_folder(m_temporary).at(0);
            fs::remove(m_copy);
            fs::create_directory(m_copy);
        }
    });
    EXPECT_EQ(convert(), 0);
    EXPECT_EQ(named_calls(sdk), whole_run_by_copy);
}

TEST_F(conversion_test, looks_at_the_raw_file_first) {
    const struct {
        std::string name; // with a closing separator: a location without a name
        int result;
    } rows[] = {
        {"none.tif", 10}, {"none/", 10},  {"none/a.cr2", 10}, {"a.Cr2", 0},  {"a.crw", 0},
        {".crw", 0},      {"a.b.cRW", 0}, {"a.cr2.bak", 11},  {"a.tif", 11}, {"a", 11},
        {"acr2", 11},     {"a.cr", 11},   {"a.cr22", 11},     {"a.", 11},    {"folder.cr2/", 11},
    };
    for (const auto& row : rows) {
        const fs::path path = m_folder / row.name;
        if (row.result != 10 && row.name.ends_with('/'))
            fs::create_directory(path);
        else if (row.result != 10)
            write_file(path, m_raw_bytes);
        const sdk_double sdk;
        EXPECT_EQ(convert_raw_to_tiff(location_of(path), location_of(m_tiff)), row.result) << row.name;
        EXPECT_EQ(sdk.inq_calls().empty(), row.result != 0) << row.name;
    }
}

TEST_F(conversion_test, hands_over_no_empty_path) {
    const sdk_double sdk;
    EXPECT_EQ(convert_raw_to_tiff(location_of(m_raw), ZFileLocation()), 11);
    EXPECT_EQ(named_calls(sdk), (calls_t{whole_run[0], whole_run[1], whole_run[2], whole_run[3],
                                         "EdsRelease(#2)", end_of_session}));
}

} // namespace
