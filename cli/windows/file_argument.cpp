#include "cli/file_argument.h"

#include "classlib/strings/ZMBString.h"

std::optional<ZFileLocation> locate(const std::string& argument) {
    const ZUString text = ZUString::from_utf8(argument.c_str());
    const ZMBString way_back(text);
    const ZFileLocation location(text, false);
    if (argument != static_cast<const char*>(way_back) || location.inq_empty())
        return {};
    return location;
}
