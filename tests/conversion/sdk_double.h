#pragma once

#include "conversion/edsdk.h"

#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

struct __EdsObject { // NOLINT(bugprone-reserved-identifier): see conversion/edsdk.h
    enum class kind_t { input, image, output } kind;
    bool is_open;
};

// Stands in for the SDK: whoever links it gets the six functions, which go to the one double that lives.
// Every call succeeds unless told otherwise, and is logged as one line, for example
//     EdsCreateFileStream(\photos\a.cr2, 2, 2) -> #1
//     EdsSaveImage(#1, 8, {0, null, 0}, #2) -> error 5
// with the path's bytes as they came and the handles numbered as they were given out.
class sdk_double final {
public:
    // What calls answer, by their number from 1 on; those without an entry succeed. A call that fails writes
    // no handle; a release takes the handle back all the same.
    using answers_t = std::map<std::size_t, eds_error_t>;

    // Runs at the end of each call.
    using watch_t = std::function<void(std::string_view call)>;

    explicit sdk_double(answers_t answers = {}, watch_t watch = {});
    sdk_double(const sdk_double&) = delete;
    sdk_double& operator=(const sdk_double&) = delete;
    ~sdk_double();

    [[nodiscard]] static sdk_double& inq_current() noexcept { return *current; }

    [[nodiscard]] const std::vector<std::string>& inq_calls() const noexcept { return m_calls; }

    // What no SDK need put up with: null, unknown or wrong handles, null pointers, calls outside a session,
    // and handles that are still open when it ends.
    [[nodiscard]] const std::vector<std::string>& inq_misuses() const noexcept { return m_misuses; }

    // The file that was last opened for reading.
    [[nodiscard]] const std::filesystem::path& inq_input_path() const noexcept { return m_input_path; }

    // The six functions.
    eds_error_t initialize();
    eds_error_t terminate();
    eds_error_t create_file_stream(const char* path, eds_disposition_t disposition, eds_access_t access,
                                   __EdsObject** stream);
    eds_error_t create_image_ref(const __EdsObject* stream, __EdsObject** image);
    eds_error_t save_image(const __EdsObject* image, eds_target_t target,
                           const tagEdsSaveImageSetting& settings, const __EdsObject* stream);
    eds_error_t release(__EdsObject* object);

private:
    using kind_t = __EdsObject::kind_t;

    eds_error_t answer(const std::string& call);
    eds_error_t answer_with_object(const std::string& call, kind_t kind, __EdsObject** object);
    void expect(bool is_right, const std::string& misuse);
    void expect_open(const __EdsObject* object, kind_t kind);
    [[nodiscard]] bool is_open(const __EdsObject* object) const;
    [[nodiscard]] std::string name_of(const __EdsObject* object) const;

    static sdk_double* current;

    answers_t m_answers;
    watch_t m_watch;
    std::vector<std::string> m_calls;
    std::vector<std::string> m_misuses;
    std::deque<__EdsObject> m_objects; // a deque, so that each stays where it is
    std::filesystem::path m_input_path;
    bool m_is_session_open = false;
    bool m_is_session_begun = false; // also when that failed
};
