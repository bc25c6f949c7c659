#include "classlib/strings/ZMBString.h"
#include "classlib/strings/ZUString.h"
#include "fuzz/fuzz_target.h"

#include <algorithm>
#include <locale>
#include <optional>
#include <string>

// Any bytes become well-formed text, which goes to UTF-8 and back unchanged; well-formed bytes stay what they
// are.
namespace {

using units_t = std::basic_string<utf16_t>;

units_t units_of(const ZUString& s) {
    return {static_cast<const utf16_t*>(s), static_cast<std::size_t>(s.length())};
}

// What the standard library makes of UTF-8; nothing when it is malformed. The library lets surrogates pass.
std::optional<units_t> decoded(const std::string& text) {
    using codec_t = std::codecvt<char16_t, char8_t, std::mbstate_t>;
    const std::u8string bytes(text.begin(), text.end());
    std::u16string units(text.size(), u'\0');
    std::mbstate_t state{};
    const char8_t* unread = nullptr;
    char16_t* end = nullptr;
    const auto result = std::use_facet<codec_t>(std::locale::classic())
                            .in(state, bytes.data(), bytes.data() + bytes.size(), unread, units.data(),
                                units.data() + units.size(), end);
    const auto surrogate = std::ranges::adjacent_find(
        bytes, [](char8_t lead, char8_t next) { return lead == 0xED && next >= 0xA0; });
    if (result != codec_t::ok || surrogate != bytes.end())
        return {};
    return units_t(units.data(), end);
}

units_t without_lone_surrogates(units_t units) {
    for (std::size_t i = 0; i < units.size(); ++i) {
        const bool is_pair = units[i] >= 0xD800 && units[i] < 0xDC00 && i + 1 < units.size() &&
                             units[i + 1] >= 0xDC00 && units[i + 1] < 0xE000;
        if (is_pair)
            ++i;
        else if (units[i] >= 0xD800 && units[i] < 0xE000)
            units[i] = 0xFFFD;
    }
    return units;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const std::string text(fuzz_input(data, size).take_text());
    const ZUString wide = ZUString::from_utf8(text.c_str());
    const std::string back(static_cast<const char*>(ZMBString(wide)));
    const auto want = decoded(text);
    require(!want || *want == units_of(wide), "well-formed UTF-8 was decoded wrongly");
    require((back == text) == want.has_value(), "only well-formed UTF-8 stays as it is");
    require(decoded(back) == units_of(wide), "wide text was not made well-formed UTF-8");

    units_t units;
    for (fuzz_input words(data, size); !words.is_empty();)
        units += words.take_value<utf16_t>();
    units = units.c_str(); // as far as its first zero
    require(units_of(ZUString::from_utf8(ZMBString(ZUString(units.c_str())))) ==
                without_lone_surrogates(units),
            "wide text did not come back from UTF-8");
    return 0;
}
