#include "classlib/files/ZFileLocation.h"
#include "conversion/convert_raw_to_tiff.h"
#include "tests/conversion/conversion_fixture.h"
#include "tests/conversion/sdk_double.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr auto end_of_session = "EdsTerminateSDK()";

const calls_t whole_run = {
    "EdsInitializeSDK()",
    "EdsCreateFileStream(RAW, 2, 2) -> #1",
    "EdsCreateImageRef(#1) -> #2",
    "EdsRelease(#1)",
    "EdsCreateFileStream(TIFF, 1, 1) -> #3",
    "EdsSaveImage(#2, 8, {0, null, 0}, #3)",
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

// What follows when a step fails; nothing for the calls whose answer is of no interest.
struct failing_step_t {
    std::string_view step; // what the call begins with
    std::optional<calls_t> then;
};
const failing_step_t failing_steps[] = {
    {"EdsInitializeSDK", calls_t{end_of_session}},
    {"EdsCreateFileStream(RAW", calls_t{end_of_session}},
    {"EdsCreateFileStream(COPY", calls_t{end_of_session}},
    {"EdsCreateImageRef", calls_t{"EdsRelease(#1)", end_of_session}},
    {"EdsCreateFileStream(TIFF", calls_t{"EdsRelease(#2)", end_of_session}},
    {"EdsSaveImage", calls_t{"EdsRelease(#3)", "EdsRelease(#2)", end_of_session}},
    {"EdsRelease", {}},
    {"EdsTerminateSDK", {}},
};

struct expected_t {
    int result;
    calls_t calls;
};

// What becomes of a whole run when the call at an index answers an error.
expected_t when_failing(const calls_t& whole, std::size_t index, eds_error_t error) {
    const auto at = whole.begin() + static_cast<std::ptrdiff_t>(index);
    expected_t expected{0, calls_t(whole.begin(), at)};
    expected.calls.push_back(at->substr(0, at->find(" -> ")) + " -> error " + std::to_string(error));
    const auto* const step = std::ranges::find_if(
        failing_steps, [&](const failing_step_t& candidate) { return at->starts_with(candidate.step); });
    if (step->then)
        expected.result = 11;
    const calls_t& then = step->then ? *step->then : calls_t(at + 1, whole.end());
    expected.calls.insert(expected.calls.end(), then.begin(), then.end());
    return expected;
}

class conversion_test : public conversion_fixture {
protected:
    // The temporary folder holds the copy, equal to the raw file, from the call at copied_at until the
    // session ends, and is empty otherwise.
    void check_run(const sdk_double::answers_t& answers, std::size_t copied_at, const expected_t& expected) {
        std::size_t n_calls = 0;
        sdk_double sdk(answers, [&](std::string_view call) {
            const bool is_copied = ++n_calls >= copied_at && !call.starts_with(end_of_session);
            EXPECT_EQ(list_folder(m_temporary).size(), is_copied ? 1U : 0U) << call;
            EXPECT_TRUE(!is_copied || read_file(sdk.inq_input_path()) == m_raw_bytes) << call;
        });
        EXPECT_EQ(convert(), expected.result);
        EXPECT_EQ(named_calls(sdk), expected.calls);
        EXPECT_EQ(sdk.inq_misuses(), calls_t());
        EXPECT_EQ(list_folder(m_temporary), calls_t());
        EXPECT_EQ(read_file(m_raw), m_raw_bytes);
    }
};

constexpr std::size_t never = 1000;
constexpr std::size_t second_open = 3;
const sdk_double::answers_t not_found_at_first = {{2, eds_file_not_found}};

TEST_F(conversion_test, runs_to_the_end) {
    check_run({}, never, {0, whole_run});
    check_run(not_found_at_first, second_open, {0, whole_run_by_copy});
}

TEST_F(conversion_test, cleans_up_whichever_call_fails) {
    for (const eds_error_t error : {1U, 34U, 0x8000FFFFU}) {
        for (std::size_t i = 0; i < whole_run.size(); ++i) {
            SCOPED_TRACE(whole_run[i] + " answers " + std::to_string(error));
            if (i != 1 || error != eds_file_not_found) // which is no failure yet
                check_run({{i + 1, error}}, never, when_failing(whole_run, i, error));
        }
        for (std::size_t i = second_open - 1; i < whole_run_by_copy.size(); ++i) {
            SCOPED_TRACE("by copy " + whole_run_by_copy[i] + " answers " + std::to_string(error));
            check_run({{2, 34}, {i + 1, error}}, second_open, when_failing(whole_run_by_copy, i, error));
        }
    }
}

TEST_F(conversion_test, fails_without_a_place_for_the_copy) {
    write_file(m_folder / "file", "");
    const auto names = list_folder(m_folder);
    for (const char* place : {"missing", "file"}) {
        const temporary_folder_setting setting(m_folder / place);
        sdk_double sdk(not_found_at_first);
        EXPECT_EQ(convert(), 11);
        EXPECT_EQ(named_calls(sdk), when_failing(whole_run, 1, 34).calls) << place;
        EXPECT_EQ(list_folder(m_folder), names);
    }
}

TEST_F(conversion_test, does_not_mind_a_copy_that_cannot_be_deleted) {
    sdk_double sdk(not_found_at_first, [&](std::string_view call) {
        if (call.starts_with("EdsSaveImage")) {
            fs::remove(sdk.inq_input_path());
            fs::create_directory(sdk.inq_input_path());
        }
    });
    EXPECT_EQ(convert(), 0);
    EXPECT_EQ(named_calls(sdk), whole_run_by_copy);
    EXPECT_EQ(list_folder(m_temporary).size(), 1U);
}

TEST_F(conversion_test, looks_at_the_raw_file_first) {
    enum class entry_t { none, file, folder };
    struct row_t {
        const char* name; // with a closing separator: a location without a name
        entry_t entry;
        int result;
    };
    constexpr row_t rows[] = {
        {"none.CR2", entry_t::none, 10},      {"none.tif", entry_t::none, 10},
        {"none/", entry_t::none, 10},         {"none/a.cr2", entry_t::none, 10},
        {"a.CR2", entry_t::file, 0},          {"a.Cr2", entry_t::file, 0},
        {"a.crw", entry_t::file, 0},          {".crw", entry_t::file, 0},
        {"a.b.cRW", entry_t::file, 0},        {"a.cr2.bak", entry_t::file, 11},
        {"a.tif", entry_t::file, 11},         {"a", entry_t::file, 11},
        {"acr2", entry_t::file, 11},          {"a.cr", entry_t::file, 11},
        {"a.cr22", entry_t::file, 11},        {"a.", entry_t::file, 11},
        {"folder.cr2/", entry_t::folder, 11}, {"folder.cr2/a", entry_t::file, 11},
    };
    for (const row_t& row : rows) {
        const fs::path path = m_folder / row.name;
        if (row.entry == entry_t::folder)
            fs::create_directory(path);
        else if (row.entry == entry_t::file)
            write_file(path, m_raw_bytes);
        sdk_double sdk;
        EXPECT_EQ(convert_raw_to_tiff(location_of(path), location_of(m_tiff)), row.result) << row.name;
        EXPECT_EQ(sdk.inq_calls().empty(), row.result != 0) << row.name;
    }
}

// A location as a host builds it, with pointers of its own.
struct host_location_t {
    const utf16_t* volume;
    const utf16_t* folder;
    const utf16_t* name;
};

int convert_for_host(const host_location_t& raw, const host_location_t& tiff) {
    return convert_raw_to_tiff(reinterpret_cast<const ZFileLocation&>(raw),
                               reinterpret_cast<const ZFileLocation&>(tiff));
}

TEST_F(conversion_test, takes_null_parts_for_empty_ones) {
    const ZFileLocation raw_location = location_of(m_raw);
    const ZFileLocation tiff_location = location_of(m_tiff);
    const host_location_t raw{nullptr, raw_location.inq_folder(), raw_location.inq_name()};
    const host_location_t tiff{nullptr, tiff_location.inq_folder(), tiff_location.inq_name()};
    const host_location_t null{nullptr, nullptr, nullptr};
    const host_location_t empty{UTF16(""), UTF16(""), UTF16("")};
    const calls_t run_without_output = {whole_run[0], whole_run[1],     whole_run[2],
                                        whole_run[3], "EdsRelease(#2)", end_of_session};

    const struct {
        host_location_t raw;
        host_location_t tiff;
        int result;
        calls_t calls;
    } rows[] = {
        {raw, tiff, 0, whole_run},
        {raw, null, 11, run_without_output},
        {raw, empty, 11, run_without_output},
        {null, tiff, 10, {}},
        {empty, tiff, 10, {}},
    };
    for (const auto& row : rows) {
        sdk_double sdk;
        EXPECT_EQ(convert_for_host(row.raw, row.tiff), row.result);
        EXPECT_EQ(named_calls(sdk), row.calls);
        EXPECT_EQ(sdk.inq_misuses(), calls_t());
    }
}

} // namespace
