#pragma once

#include "conversion/edsdk.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

struct __EdsObject { // NOLINT(bugprone-reserved-identifier): see conversion/edsdk.h
    std::size_t number;
    bool is_open;
};

// Stands in for the SDK in one conversion: whoever links it gets the six functions, which go to the one
// double that lives. Every call succeeds unless told otherwise, and is logged as one line, for example
//     EdsCreateFileStream(\photos\a.cr2, 2, 2) -> #1
//     EdsSaveImage(#1, 8, #2) -> error 5
// with the path's bytes as they came and the handles numbered as they were given out. A call that fails
// writes no handle; a release takes the handle back all the same. What no SDK need put up with fails the
// test: null or released handles, empty paths, calls outside the session, and handles that are open at the
// end.
class sdk_double final {
public:
    // What calls answer, by their number from 1 on; those without an entry succeed.
    using answers_t = std::map<std::size_t, eds_error_t>;

    // Runs at the end of each call.
    using watch_t = std::function<void(std::string_view call)>;

    explicit sdk_double(answers_t answers = {}, watch_t watch = {});
    sdk_double(const sdk_double&) = delete;
    sdk_double& operator=(const sdk_double&) = delete;
    ~sdk_double();

    [[nodiscard]] static sdk_double& inq_current() noexcept { return *current; }

    [[nodiscard]] const std::vector<std::string>& inq_calls() const noexcept { return m_calls; }

    eds_error_t answer(std::string call, __EdsObject** new_object = nullptr);

private:
    static sdk_double* current;

    answers_t m_answers;
    watch_t m_watch;
    std::vector<std::string> m_calls;
    std::deque<__EdsObject> m_objects; // a deque, so that each stays where it is
};
