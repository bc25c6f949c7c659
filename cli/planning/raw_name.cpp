#include "cli/planning/raw_name.h"

#include "classlib/files/ZFileLocation.h"
#include "conversion/raw_extension.h"

bool has_raw_name(const std::string& path) {
    return has_raw_extension(ZFileLocation(ZUString::from_utf8(path.c_str()), false));
}
