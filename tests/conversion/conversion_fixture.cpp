#include "tests/conversion/conversion_fixture.h"

#include "conversion/convert_raw_to_tiff.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace fs = std::filesystem;

namespace {

// A path as the SDK gets it: the UTF-8 bytes, with backslashes.
std::string sdk_text(const fs::path& path) {
    const std::u8string text = path.u8string();
    std::string result(text.begin(), text.end());
    std::ranges::replace(result, '/', '\\');
    return result;
}

// Whether a name is one that copies are given.
bool is_copy_name(std::string_view name) {
    constexpr std::string_view characters = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    return name.size() == 28 && name.starts_with("KW-") && name.ends_with(".tiff") &&
           name.substr(3, 20).find_first_not_of(characters) == std::string_view::npos;
}

std::string replaced(std::string text, const std::string& part, std::string_view by) {
    const std::size_t at = text.find(part);
    return at == std::string::npos ? text : text.replace(at, part.size(), by);
}

} // namespace

ZFileLocation location_of(const fs::path& path) {
    return ZFileLocation(path.string<utf16_t>().c_str(), false);
}

conversion_fixture::conversion_fixture() {
    fs::create_directories(m_temporary);
    write_file(m_raw, m_raw_bytes);
}

int conversion_fixture::convert() const {
    return convert_raw_to_tiff(location_of(m_raw), location_of(m_tiff));
}

calls_t conversion_fixture::named_calls(const sdk_double& sdk) const {
    const std::string temporary = sdk_text(m_temporary) + '\\';
    calls_t calls = sdk.inq_calls();
    for (std::string& call : calls) {
        call = replaced(call, sdk_text(m_raw), "RAW");
        call = replaced(call, sdk_text(m_tiff), "TIFF");
        const std::size_t at = call.find(temporary);
        const std::size_t end = call.find(',');
        if (at < end && is_copy_name(std::string_view(call).substr(0, end).substr(at + temporary.size())))
            call.replace(at, end - at, "COPY");
    }
    return calls;
}
