#include "cli/converting/describe_file.h"

#include "classlib/files/ZFileLocation.h"
#include "classlib/strings/ZMBString.h"
#include "cli/converting/failure_outcome.h"
#include "cli/file_argument.h"
#include "conversion/pixrerr.h"
#include "conversion/raw_file_check.h"
#include "conversion/sdk_object.h"
#include "conversion/sdk_session.h"

namespace {

eds_error_t identify_in_session(const ZFileLocation& raw) {
    const ZString path = ZMBString(raw.inq_path());
    sdk_object input;
    sdk_object image;
    const eds_error_t error =
        input.open_file(path, eds_disposition_t::open_existing, eds_access_t::read_write);
    return error == eds_ok ? image.make_image(input) : error;
}

pixrerr_t identify(const ZFileLocation& raw) {
    if (const pixrerr_t problem = check_raw_file(raw); problem != pixrerr_ok)
        return problem;
    const sdk_session session;
    eds_error_t error = session.inq_error();
    if (error == eds_ok)
        error = identify_in_session(raw);
    return error == eds_ok ? pixrerr_ok : pixrerr_failed;
}

} // namespace

result_t describe_file(const job_t& job) {
    result_t result{job, outcome_t::described, {}, {}};
    const auto raw = locate(job.input);
    if (!raw) {
        fail(result, outcome_t::bad_input, "its name cannot be used");
        return result;
    }
    const sdk_open::facts_collection facts(result.facts);
    if (const pixrerr_t code = identify(*raw); code != pixrerr_ok)
        explain_failure(result, code, *raw);
    return result;
}
