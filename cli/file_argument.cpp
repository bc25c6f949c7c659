#include "cli/file_argument.h"

#include "classlib/strings/ZMBString.h"

std::optional<ZFileLocation> locate(const std::string& argument) {
    const ZUString text = ZUString::from_utf8(argument.c_str());
    const ZMBString way_back(text);
    if (argument != static_cast<const char*>(way_back) || argument.find('\\') != std::string::npos)
        return {};
    return ZFileLocation(text, false);
}
