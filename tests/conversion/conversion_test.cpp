#include "conversion/convert_raw_to_tiff.h"
#include "conversion/edsdk.h"
#include "tests/support/allocation_meter.h"
#include "tests/support/files_fixture.h"
#include "tests/support/temporary_folder_setting.h"

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <sstream>

struct __EdsObject { // NOLINT(bugprone-reserved-identifier): see conversion/edsdk.h
    bool is_open = false;
};

namespace {

// Stands in for the SDK. A call that fails writes no handle; a release takes the handle back all the same.
// Null or released handles, calls outside the session and handles that are open at its end fail the test.
struct sdk_double {
    // What calls answer, by their number from 1 on (the others succeed), and what runs at the end of each.
    std::map<std::size_t, eds_error_t> answers = {};
    std::function<void(std::string_view call)> watch = [](std::string_view) {};

    // The calls, an error after the call that answered it, no folders, the handles numbered as given out.
    std::string log = {};
    std::size_t n_calls = 0;
    std::size_t n_objects = 0;
    std::array<__EdsObject, 3> objects = {}; // as many as a conversion needs
} the_sdk;

std::ostream& operator<<(std::ostream& out, const __EdsObject* object) {
    EXPECT_TRUE(object != nullptr && object->is_open) << "a null or released handle";
    return out << '#' << object - the_sdk.objects.data() + 1;
}

// What the double allocates is none of the memory that the code under test may run out of.
eds_error_t answer(__EdsObject** new_object, const auto&... parts_of_call) {
    const allocation_meter::exemption exemption;
    std::ostringstream call;
    (call << ... << parts_of_call);
    EXPECT_EQ(++the_sdk.n_calls == 1, call.view() == "EdsInitializeSDK()") << call.view();
    const eds_error_t error = the_sdk.answers[the_sdk.n_calls];
    the_sdk.log += call.str() + (error != eds_ok ? '=' + std::to_string(error) : "") + ' ';
    if (error == eds_ok && new_object != nullptr) {
        *new_object = &the_sdk.objects.at(the_sdk.n_objects++);
        (*new_object)->is_open = true;
    }
    the_sdk.watch(call.view());
    return error;
}

} // namespace

eds_error_t EdsInitializeSDK() {
    return answer(nullptr, "EdsInitializeSDK()");
}

eds_error_t EdsTerminateSDK() {
    EXPECT_TRUE(std::ranges::none_of(the_sdk.objects, &__EdsObject::is_open)) << the_sdk.log;
    return answer(nullptr, "EdsTerminateSDK()");
}

eds_error_t EdsCreateFileStream(const char* path, eds_disposition_t disposition, eds_access_t access,
                                __EdsObject** stream) {
    const std::string_view name = std::string_view(path).substr(std::string_view(path).rfind('\\') + 1);
    return answer(stream, "EdsCreateFileStream(", name, ',', static_cast<int>(disposition), ',',
                  static_cast<int>(access), ')');
}

eds_error_t EdsCreateImageRef(__EdsObject* stream, __EdsObject** image) {
    return answer(image, "EdsCreateImageRef(", stream, ')');
}

eds_error_t EdsSaveImage(__EdsObject* image, eds_target_t target, tagEdsSaveImageSetting settings,
                         __EdsObject* stream) {
    EXPECT_TRUE(settings.jpeg_quality == 0 && settings.profile == nullptr && settings.reserved == 0);
    return answer(nullptr, "EdsSaveImage(", image, ',', static_cast<int>(target), ',', stream, ')');
}

eds_error_t EdsRelease(__EdsObject* object) {
    const eds_error_t error = answer(nullptr, "EdsRelease(", object, ')');
    object->is_open = false;
    return error;
}

namespace {

// The calls of a conversion, and what follows when one fails: where that is nothing, all goes on.
const struct {
    std::string call;
    std::string after_failure = {};
} steps[] = {
    {"EdsInitializeSDK()", "EdsTerminateSDK() 11"},
    {"EdsCreateFileStream(raw.CR2,2,2)", "EdsTerminateSDK() 11"},
    {"EdsCreateImageRef(#1)", "EdsRelease(#1) EdsTerminateSDK() 11"},
    {"EdsRelease(#1)"},
    {"EdsCreateFileStream(new.tif,1,1)", "EdsRelease(#2) EdsTerminateSDK() 11"},
    {"EdsSaveImage(#2,8,#3)", "EdsRelease(#3) EdsRelease(#2) EdsTerminateSDK() 11"},
    {"EdsRelease(#3)"},
    {"EdsRelease(#2)"},
    {"EdsTerminateSDK()"},
};

// The calls when the n-th one, from 1 on, answers an error, and the result of the conversion.
std::string outcome_in_place(std::size_t n, eds_error_t error) {
    std::string outcome;
    for (const auto& [call, after_failure] : steps) {
        outcome += call + (--n == 0 ? '=' + std::to_string(error) : "") + ' ';
        if (n == 0 && !after_failure.empty())
            return outcome + after_failure;
    }
    return outcome + '0';
}

// The same where the copy is opened instead of the raw file.
std::string outcome_by_copy(std::size_t n) {
    std::string outcome = outcome_in_place(n, eds_file_not_found);
    return outcome.insert(outcome.find("raw.CR2"), "raw.CR2,2,2)=34 EdsCreateFileStream(")
        .replace(outcome.rfind("raw.CR2"), 7, "COPY.tiff");
}

// The folder of the files is the temporary folder, too.
class conversion_test : public files_fixture {
protected:
    conversion_test() { write("raw.CR2", m_raw_bytes); }

    // Answers the calls, without the copy's random name, and the result.
    [[nodiscard]] std::string convert(const ZFileLocation& tiff) const {
        const int result = convert_raw_to_tiff(m_raw, tiff);
        if (const std::size_t copy = the_sdk.log.find("KW-"); copy != std::string::npos) {
            constexpr auto characters = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
            EXPECT_EQ(the_sdk.log.find_first_not_of(characters, copy + 3), copy + 23) << the_sdk.log;
            the_sdk.log.replace(copy, 23, "COPY");
        }
        return the_sdk.log + std::to_string(result);
    }

    // There must be the raw file and, where expected, the copy that the SDK was told of.
    void check_files(bool has_copy) const {
        const std::string names = list();
        const std::string first = names.substr(0, names.find(' '));
        EXPECT_EQ(names, (has_copy ? first + ' ' : "") + "raw.CR2 ") << the_sdk.log;
        EXPECT_TRUE(!has_copy || the_sdk.log.find(first) != std::string::npos) << the_sdk.log;
        EXPECT_TRUE(read(first) == m_raw_bytes) << the_sdk.log;
    }

    const std::string m_raw_bytes = std::string(70000, 'r') + '\0' + "end";
    const ZFileLocation m_raw = file("raw.CR2");
    const ZFileLocation m_tiff = file("new.tif");
    const temporary_folder_setting m_setting{path("")};
};

TEST_F(conversion_test, converts_and_cleans_up_whichever_call_fails) {
    const auto watch = [&](std::string_view call) {
        check_files(the_sdk.answers[2] == 34 && the_sdk.n_calls > 2 && call != "EdsTerminateSDK()");
    };
    for (std::size_t n = 1; n <= std::size(steps) + 1; ++n) { // the last time, none fails
        the_sdk = {{{n, 0x8000FFFF}}, watch};
        EXPECT_EQ(convert(m_tiff), outcome_in_place(n, 0x8000FFFF));
        the_sdk = {{{2, eds_file_not_found}, {n + 1, eds_file_not_found}}, watch};
        EXPECT_EQ(convert(m_tiff), outcome_by_copy(n > 1 ? n : 0)); // the second call fails already
    }
}

TEST_F(conversion_test, fails_cleanly_wherever_memory_runs_out) {
    for (const eds_error_t first_open : {eds_ok, eds_file_not_found}) {
        bool has_failed = true;
        for (int n = 1; has_failed; ++n) {
            the_sdk = {{{2, first_open}}};
            allocation_meter::section memory(n);
            const int result = convert_raw_to_tiff(m_raw, m_tiff);
            memory.stop();

            has_failed = memory.inq_failed();
            EXPECT_EQ(result, has_failed ? 11 : 0) << n;
            EXPECT_EQ(memory.inq_held(), 0) << n;
            EXPECT_EQ(the_sdk.log.empty(), the_sdk.log.find("EdsTerminateSDK()") == std::string::npos) << n;
            check_files(false);
            EXPECT_TRUE(has_failed || n > 10) << "too few to mean something";
        }
    }
}

TEST_F(conversion_test, goes_on_from_what_happens_to_the_copy) {
    the_sdk = {{{2, eds_file_not_found}}, [&](std::string_view call) {
                   if (call.starts_with("EdsSaveImage"))
                       std::filesystem::remove(path(list().substr(0, list().find(' '))));
               }};
    EXPECT_EQ(convert(m_tiff), outcome_by_copy(0)) << "cannot be deleted";
    const temporary_folder_setting setting(path("missing"));
    the_sdk = {{{2, eds_file_not_found}}};
    EXPECT_EQ(convert(m_tiff), outcome_in_place(2, eds_file_not_found)) << "has no place";
}

TEST_F(conversion_test, looks_at_the_locations_first) {
    const std::map<std::string, int> results = {{"none.tif", 10}, {"none/a.cr2", 10}, {"a.Cr2", 0},
                                                {".crw", 0},      {"a.b.cRW", 0},     {"a", 11},
                                                {"acr2", 11},     {"a.cr22", 11}};
    for (const auto& [name, result] : results) {
        the_sdk = {};
        if (result != 10)
            write(name, m_raw_bytes);
        EXPECT_EQ(convert_raw_to_tiff(file(name), m_tiff), result) << name;
        EXPECT_EQ(the_sdk.log.empty(), result != 0) << name;
    }
    the_sdk = {};
    EXPECT_TRUE(convert({}).ends_with("EdsRelease(#1) EdsRelease(#2) EdsTerminateSDK() 11"));
}

} // namespace
