#include "conversion/ZCanonImageConvertor.h"

#include "classlib/files/ZFileLocation.h"
#include "classlib/strings/ZMBString.h"
#include "conversion/sdk_object.h"
#include "conversion/sdk_session.h"
#include "conversion/temporary_copy.h"

#include <optional>

namespace {

eds_error_t open_input(const ZString& path, sdk_object& input) {
    return input.open_file(path, eds_disposition_t::open_existing, eds_access_t::read_write);
}

// Makes the image of the raw file. The stream is released before this returns, and before the copy that it
// may be reading is deleted.
eds_error_t read_image(const ZFileLocation& raw_path, std::optional<temporary_copy>& copy,
                       sdk_object& image) {
    sdk_object input;
    ZString input_path = ZMBString(raw_path.inq_path());
    eds_error_t error = open_input(input_path, input);

    copy.emplace(); // a place for a copy is chosen whether one is needed or not
    if (error == eds_file_not_found && copy->make_from(raw_path)) {
        input_path = ZMBString(copy->inq_path().inq_path());
        error = open_input(input_path, input);
    }
    return error == eds_ok ? image.make_image(input) : error;
}

eds_error_t save_image(const sdk_object& image, const ZFileLocation& tiff_path) {
    const tagEdsSaveImageSetting defaults{};
    const ZString output_path = ZMBString(tiff_path.inq_path());
    sdk_object output;
    const eds_error_t error =
        output.open_file(output_path, eds_disposition_t::create_always, eds_access_t::write);
    if (error != eds_ok)
        return error;
    return EdsSaveImage(image.inq_handle(), eds_target_t::tiff_16_bit, defaults, output.inq_handle());
}

// Declared in the opposite order of their release: streams first, then the image, the copy last.
eds_error_t convert_in_session(const ZFileLocation& raw_path, const ZFileLocation& tiff_path) {
    std::optional<temporary_copy> copy;
    sdk_object image;
    const eds_error_t error = read_image(raw_path, copy, image);
    return error == eds_ok ? save_image(image, tiff_path) : error;
}

} // namespace

pixrerr_t ZCanonImageConvertor::convert(const ZFileLocation& raw_path, const ZFileLocation& tiff_path) {
    const sdk_session session;
    eds_error_t error = session.inq_error();
    if (error == eds_ok)
        error = convert_in_session(raw_path, tiff_path);
    return error == eds_ok ? pixrerr_ok : pixrerr_failed;
}
