#include "conversion/convert_raw_to_tiff.h"

#include "classlib/files/ZFileLocation.h"
#include "conversion/ZCanonImageConvertor.h"
#include "conversion/pixrerr.h"
#include "conversion/raw_file_check.h"

namespace {

pixrerr_t convert_checked(const ZFileLocation& raw_path, const ZFileLocation& tiff_path) {
    const pixrerr_t problem = check_raw_file(raw_path);
    return problem == pixrerr_ok ? ZCanonImageConvertor::convert(raw_path, tiff_path) : problem;
}

} // namespace

extern "C" int convert_raw_to_tiff(const ZFileLocation& raw_path, const ZFileLocation& tiff_path) noexcept {
    try {
        return convert_checked(raw_path, tiff_path);
    } catch (...) {
        // Out of memory, in all likelihood. Everything was released on the way here, and the host, written in
        // whatever language, can make nothing of an exception.
        return pixrerr_failed;
    }
}
