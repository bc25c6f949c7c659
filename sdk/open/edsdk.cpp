#include "conversion/edsdk.h"

#include "sdk/open/developing/picture_maker.h"
#include "sdk/open/failure.h"
#include "sdk/open/failure_reason.h"
#include "sdk/open/handle_table.h"
#include "sdk/open/identifying/raw_format.h"
#include "sdk/open/metadata/collected_facts.h"
#include "sdk/open/open_objects.h"
#include "sdk/open/output_options.h"
#include "sdk/open/picture_facts.h"
#include "sdk/open/system/input_file.h"
#include "sdk/open/system/large_block.h"
#include "sdk/open/system/system_calls.h"
#include "sdk/open/writing/tiff_writer.h"

#include <algorithm>
#include <functional>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace sdk_open {
namespace {

// What there is between EdsInitializeSDK and EdsTerminateSDK.
struct session {
    std::vector<system_calls::file_identity> raw_files; // all that were opened, also if given back since
    handle_table handles;
};
std::optional<session> the_session;

session& running_session() {
    if (!the_session)
        throw failure(error_code_t::not_initialised, "the SDK is not initialised");
    return *the_session;
}

sdk_blame_t blame_for(error_code_t code) noexcept {
    switch (code) {
    case error_code_t::out_of_memory:
        return sdk_blame_t::memory;
    case error_code_t::disk_full:
        return sdk_blame_t::full_disk;
    case error_code_t::output_appeared:
        return sdk_blame_t::appeared_output;
    case error_code_t::failed:
    case error_code_t::cannot_open_input:
    case error_code_t::cannot_write_output:
        return sdk_blame_t::system;
    default:
        return sdk_blame_t::picture;
    }
}

eds_error_t failed(error_code_t code, std::string_view reason) noexcept {
    const bool caller_may_get_around = code == error_code_t::file_not_found;
    keep_failure_reason(reason, caller_may_get_around ? reason_t::provisional : reason_t::final,
                        blame_for(code));
    return static_cast<eds_error_t>(code);
}

// Runs the body of one of the six functions: what it throws becomes a code and a reason, and nothing leaves.
template <typename Body>
eds_error_t guarded(Body&& body) noexcept {
    try {
        std::invoke(std::forward<Body>(body));
        return eds_ok;
    } catch (const failure& problem) {
        return failed(problem.inq_code(), problem.what());
    } catch (const std::bad_alloc&) {
        return failed(error_code_t::out_of_memory, "not enough memory");
    } catch (const std::system_error& problem) {
        return failed(error_code_t::failed, problem.what());
    } catch (...) {
        return failed(error_code_t::failed, "internal error");
    }
}

// Looks at the first bytes before it reads them all: what is no raw file may be large.
large_block read_raw_file(const input_file& file) {
    const auto signature = file.read_first(raw_signature_size);
    if (!signature.empty())
        static_cast<void>(recognise_raw_format(signature));
    return file.read_whole();
}

void check_argument(bool is_given) {
    if (!is_given)
        throw failure(error_code_t::bad_argument, "an argument is missing");
}

// Paths come with backslashes between their parts.
std::string system_path(const char* path) {
    std::string converted(path);
    std::ranges::replace(converted, '\\', '/');
    return converted;
}

__EdsObject* open_input(session& running, const std::string& path) {
    __EdsObject* const stream = running.handles.make<input_stream>(path);
    running.raw_files.push_back(running.handles.find<input_stream>(stream).file.inq_identity());
    return stream;
}

__EdsObject* make_stream(std::string path, eds_disposition_t disposition) {
    session& running = running_session();
    switch (disposition) {
    case eds_disposition_t::open_existing:
        return open_input(running, path);
    case eds_disposition_t::create_always:
        return running.handles.make<output_stream>(std::move(path), running.raw_files);
    }
    throw failure(error_code_t::not_supported, "unknown way of opening a file");
}

__EdsObject* identify(handle_table& handles, const input_file& file) {
    __EdsObject* const image = handles.make<raw_image>(read_raw_file(file));
    if (picture_facts* const target = facts_collection::inq_target()) {
        const auto& identified = handles.find<raw_image>(image);
        *target = collect_facts(identified.decoder.inq_data(), identified.metadata);
    }
    return image;
}

} // namespace
} // namespace sdk_open

using namespace sdk_open;

eds_error_t EdsInitializeSDK() {
    return guarded([] {
        forget_failure_reason();
        the_session.emplace();
    });
}

eds_error_t EdsTerminateSDK() {
    return guarded([] { the_session.reset(); });
}

// The access is not looked at: nothing is ever written to an existing file, and one to be made is only
// written.
eds_error_t EdsCreateFileStream(const char* path, eds_disposition_t disposition, eds_access_t,
                                __EdsObject** stream) {
    return guarded([&] {
        check_argument(path != nullptr && stream != nullptr);
        *stream = make_stream(system_path(path), disposition);
    });
}

eds_error_t EdsCreateImageRef(__EdsObject* stream, __EdsObject** image) {
    return guarded([&] {
        check_argument(stream != nullptr && image != nullptr);
        handle_table& handles = running_session().handles;
        *image = identify(handles, handles.find<input_stream>(stream).file);
    });
}

// The settings say nothing about a TIFF.
eds_error_t EdsSaveImage(__EdsObject* image, eds_target_t target, tagEdsSaveImageSetting,
                         __EdsObject* stream) {
    return guarded([&] {
        check_argument(image != nullptr && stream != nullptr);
        if (target != eds_target_t::tiff_16_bit)
            throw failure(error_code_t::not_supported, "only 16-bit TIFF can be written");
        const handle_table& handles = running_session().handles;
        auto& source = handles.find<raw_image>(image);
        auto& file = handles.find<output_stream>(stream).file;
        write_tiff(file, *make_picture(source.decoder), source.metadata, inq_compression());
        file.commit(inq_expected_target());
    });
}

eds_error_t EdsRelease(__EdsObject* object) {
    return guarded([&] {
        if (object != nullptr)
            running_session().handles.release(object);
    });
}
