#include "classlib/files/ZFileLocation.h"
#include "fuzz/fuzz_target.h"

#include <string>

// What a location is parsed from is what it is composed to.
namespace {

using units_t = std::basic_string<utf16_t>;
constexpr utf16_t separator = u'\\';

units_t units_of(const ZUString& s) {
    return {static_cast<const utf16_t*>(s), static_cast<std::size_t>(s.length())};
}

// The path that a location parsed from a text is composed to: the text, but for a server without a name.
units_t composed(units_t text) {
    const bool is_unc = text.starts_with(units_t(2, separator)) && text.find(u':') != 1;
    return is_unc && (text.size() == 2 || text[2] == separator) ? text.substr(2) : text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const std::string text = fuzz_input(data, size).take_text(); // the structure of a path is ASCII
    ZUString path(units_t(text.begin(), text.end()).c_str());
    const ZFileLocation location(path, false);
    const units_t volume = units_of(location.inq_volume());
    const units_t folder = units_of(location.inq_folder());
    const units_t name = units_of(location.inq_name());
    require(name.find(separator) == name.npos, "a name holds a separator");
    require(folder.empty() || folder.back() == separator, "a folder does not end with a separator");
    require(units_of(location.inq_base_name()) + units_of(location.inq_extension()) == name,
            "a name is not its base name and its extension");
    require(units_of(location.inq_description()) == name + UTF16(" - ") + volume + folder,
            "a description is not name, volume and folder");
    const units_t drive = {location.inq_drive_letter(), u':'};
    const units_t server = UTF16("\\\\") + units_of(location.inq_server());
    require(volume.empty() || volume == drive || volume == server,
            "a volume is neither a drive nor a server");

    path.replace(UTF16("/"), UTF16("\\"));
    const bool is_stray_colon = path.inq_char(0) == separator && path.inq_char(1) == u':';
    require(is_stray_colon || units_of(location.inq_path()) == composed(units_of(path)),
            "a path changed its text");
    return 0;
}
