#include "sdk/open/metadata/decoder_metadata.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <numeric>
#include <string_view>
#include <tiff.h>

namespace sdk_open {
namespace {

template <std::size_t Size>
std::string text_in(const char (&units)[Size]) {
    const std::string_view text(units, Size);
    return std::string(text.substr(0, text.find('\0')));
}

// The decoder drops the maker's name from the front of the model's: "PowerShot S40".
std::string full_model(const std::string& make, const std::string& model) {
    return model.empty() || model.starts_with(make) ? model : make + ' ' + model;
}

// Camera time, which such a file holds as seconds without a zone: "2009:07:21 13:03:20". Empty where unknown.
std::string date_time_of(std::time_t seconds) {
    if (seconds <= 0)
        return {};
    const std::chrono::sys_seconds moment{std::chrono::seconds(seconds)};
    const auto day = std::chrono::floor<std::chrono::days>(moment);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss time(moment - day);
    std::array<char, 64> text{};
    const int length =
        std::snprintf(text.data(), text.size(), "%04d:%02u:%02u %02d:%02d:%02d",
                      static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                      static_cast<unsigned>(date.day()), static_cast<int>(time.hours().count()),
                      static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()));
    constexpr int regular_length = 19;
    return length == regular_length ? text.data() : std::string();
}

using field_list = std::vector<metadata_field>;

void add_text(field_list& fields, std::uint16_t tag, const std::string& text) {
    if (!text.empty())
        fields.push_back(text_field(tag, text));
}

// Whether a number is known (not 0) and what a lens or a shutter may have.
bool is_sensible(float number) noexcept {
    return number >= 1e-6F && number <= 1e6F;
}

// The nearest fraction with this denominator, in lowest terms: 7.09375 and 32 give 227/32.
rational fraction(float number, std::uint32_t denominator) {
    const auto numerator = static_cast<std::uint32_t>(std::lround(number * static_cast<float>(denominator)));
    const std::uint32_t common = std::max(1U, std::gcd(numerator, denominator));
    return {numerator / common, denominator / common};
}

// Shutters are set to 1/n of a second or to tenths of one; the camera stores a logarithm, which comes out as
// something close.
rational exposure_time(float seconds) {
    constexpr float shortest_in_tenths = 0.29F;
    if (seconds < shortest_in_tenths)
        return {1, static_cast<std::uint32_t>(std::lround(1 / seconds))};
    return fraction(seconds, 10);
}

void add_exposure(field_list& fields, const libraw_imgother_t& shot) {
    constexpr std::uint32_t aperture_steps = 10;
    constexpr std::uint32_t focal_length_steps = 32; // what the cameras count in
    if (is_sensible(shot.shutter))
        fields.push_back(rational_field(EXIFTAG_EXPOSURETIME, std::array{exposure_time(shot.shutter)}));
    if (is_sensible(shot.aperture))
        fields.push_back(
            rational_field(EXIFTAG_FNUMBER, std::array{fraction(shot.aperture, aperture_steps)}));
    if (is_sensible(shot.focal_len))
        fields.push_back(
            rational_field(EXIFTAG_FOCALLENGTH, std::array{fraction(shot.focal_len, focal_length_steps)}));
    if (shot.iso_speed >= 1 && shot.iso_speed <= 65535)
        fields.push_back(
            short_field(EXIFTAG_ISOSPEEDRATINGS, static_cast<std::uint16_t>(std::lround(shot.iso_speed))));
}

// The lens by its name and as the four numbers focal length from and to, widest aperture at either.
void add_lens(field_list& fields, const libraw_lensinfo_t& lens) {
    const std::string name = text_in(lens.Lens);
    add_text(fields, EXIFTAG_LENSMODEL, name.empty() ? text_in(lens.makernotes.Lens) : name);
    const auto& maker = lens.makernotes;
    const std::array numbers = {maker.MinFocal, maker.MaxFocal, maker.MaxAp4MinFocal, maker.MaxAp4MaxFocal};
    if (!std::ranges::all_of(numbers, is_sensible))
        return;
    std::array<rational, numbers.size()> tenths{};
    std::ranges::transform(numbers, tenths.begin(), [](float number) { return fraction(number, 10); });
    fields.push_back(rational_field(EXIFTAG_LENSSPECIFICATION, tenths));
}

} // namespace

picture_metadata read_decoder_metadata(const libraw_data_t& decoded) {
    picture_metadata found;
    found.make = text_in(decoded.idata.make);
    found.model = full_model(found.make, text_in(decoded.idata.model));
    found.date_time = date_time_of(decoded.other.timestamp);
    found.artist = text_in(decoded.other.artist);
    found.exif.push_back(undefined_field(EXIFTAG_EXIFVERSION, "0230"));
    found.exif.push_back(undefined_field(EXIFTAG_FLASHPIXVERSION, "0100"));
    add_text(found.exif, EXIFTAG_DATETIMEORIGINAL, found.date_time);
    add_text(found.exif, EXIFTAG_DATETIMEDIGITIZED, found.date_time);
    add_exposure(found.exif, decoded.other);
    add_lens(found.exif, decoded.lens);
    return found;
}

} // namespace sdk_open
