#include "conversion/raw_extension.h"

#include "classlib/files/ZFileLocation.h"

bool has_raw_extension(const ZFileLocation& file) {
    const ZUString extension = file.inq_extension();
    return extension.compare_no_case(UTF16(".cr2")) == 0 || extension.compare_no_case(UTF16(".crw")) == 0;
}
