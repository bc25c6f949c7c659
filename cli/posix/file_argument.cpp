#include "cli/file_argument.h"

#include "classlib/strings/ZMBString.h"

#include <climits>
#include <string_view>

namespace {

// Two separators in front would name a server, which means nothing here: all but one are dropped.
std::string_view without_server(std::string_view argument) {
    while (argument.starts_with("//"))
        argument.remove_prefix(1);
    return argument;
}

} // namespace

std::optional<ZFileLocation> locate(const std::string& argument) {
    const std::string_view path = without_server(argument);
    const ZUString text = ZUString::from_utf8(path.data()); // ends where the argument ends
    const ZMBString way_back(text);
    const bool is_kept = path == static_cast<const char*>(way_back);
    const ZFileLocation location(text, false);
    if (!is_kept || path.size() >= PATH_MAX || path.find('\\') != std::string_view::npos ||
        location.inq_empty())
        return {};
    return location;
}
