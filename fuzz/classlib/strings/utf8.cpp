#include "classlib/strings/ZMBString.h"
#include "classlib/strings/ZUString.h"
#include "fuzz/fuzz_target.h"

#include <optional>
#include <string>

// Any bytes become well-formed text, which goes to UTF-8 and back unchanged; well-formed bytes stay what they
// are.
namespace {

using units_t = std::basic_string<utf16_t>;

units_t units_of(const ZUString& s) {
    return {static_cast<const utf16_t*>(s), static_cast<std::size_t>(s.length())};
}

std::string bytes_of(const ZString& s) {
    return {static_cast<const char*>(s), static_cast<std::size_t>(s.length())};
}

void append_code_point(units_t& units, char32_t c) {
    if (c >= 0x10000) {
        units += static_cast<utf16_t>(0xD800 + ((c - 0x10000) >> 10));
        c = 0xDC00 + (c & 0x3FF);
    }
    units += static_cast<utf16_t>(c);
}

// The text of well-formed UTF-8, by arithmetic on whole sequences; nothing when it is malformed.
std::optional<units_t> decoded(const std::string& text) {
    units_t units;
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i++]);
        const int n_more = lead < 0x80 ? 0 : lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
        auto c = static_cast<char32_t>(n_more == 0 ? lead : lead & (0x3F >> n_more));
        for (int k = 0; k < n_more; ++k, ++i) {
            if (i == text.size() || (text[i] & 0xC0) != 0x80)
                return {};
            c = c << 6 | static_cast<char32_t>(text[i] & 0x3F);
        }
        constexpr char32_t first_of_length[] = {0, 0x80, 0x800, 0x10000};
        const bool is_surrogate = c >= 0xD800 && c < 0xE000;
        if ((n_more > 0 && lead < 0xC0) || lead >= 0xF8 || c < first_of_length[n_more] || c > 0x10FFFF ||
            is_surrogate)
            return {};
        append_code_point(units, c);
    }
    return units;
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

void check_bytes(const std::string& text) {
    const ZUString wide = ZUString::from_utf8(text.c_str());
    const ZMBString back(wide);
    const auto want = decoded(text);
    require(!want || *want == units_of(wide), "well-formed UTF-8 was decoded wrongly");
    require((bytes_of(back) == text) == want.has_value(), "only well-formed UTF-8 stays as it is");
    require(decoded(bytes_of(back)) == units_of(wide), "wide text was not made well-formed UTF-8");
}

void check_units(const units_t& units) {
    const ZMBString bytes(ZUString(units.c_str()));
    require(units_of(ZUString::from_utf8(bytes)) == without_lone_surrogates(units),
            "wide text did not come back from UTF-8");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    fuzz_input bytes(data, size);
    const std::string text(bytes.take_all());
    check_bytes(text.substr(0, text.find('\0')));
    units_t units;
    for (fuzz_input words(data, size); !words.is_empty();)
        units += words.take_value<utf16_t>();
    check_units(units.substr(0, units.find(u'\0')));
    return 0;
}
