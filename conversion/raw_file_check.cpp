#include "conversion/raw_file_check.h"

#include "classlib/files/ZFile.h"
#include "conversion/raw_extension.h"

pixrerr_t check_raw_file(const ZFileLocation& file) {
    if (!ZFile::inq_exists(file))
        return pixrerr_missing_file;
    return has_raw_extension(file) ? pixrerr_ok : pixrerr_failed;
}
