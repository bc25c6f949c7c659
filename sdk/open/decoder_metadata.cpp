#include "sdk/open/decoder_metadata.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <string_view>

namespace sdk_open {
namespace {

template <std::size_t Size>
std::string text_of(const char (&units)[Size]) {
    const std::string_view text(units, Size);
    return std::string(text.substr(0, text.find('\0')));
}

// The decoder drops the maker's name from the front of the model's: "PowerShot S40".
std::string full_model(const std::string& make, const std::string& model) {
    return model.empty() || model.starts_with(make) ? model : make + ' ' + model;
}

// Camera time, which such a file holds as seconds without a zone: "2009:07:21 13:03:20". Empty where unknown.
std::string date_time_of(std::time_t seconds) {
    std::tm parts{};
    if (seconds <= 0 || gmtime_r(&seconds, &parts) == nullptr)
        return {};
    std::array<char, 32> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), "%Y:%m:%d %H:%M:%S", &parts);
    constexpr std::size_t regular_length = 19;
    return length == regular_length ? std::string(text.data(), length) : std::string();
}

template <typename Number, std::size_t Count>
field_array array_of(const std::array<Number, Count>& numbers) {
    field_array values{Count, std::vector<std::byte>(sizeof numbers)};
    std::memcpy(values.bytes.data(), numbers.data(), sizeof numbers);
    return values;
}

class field_list final {
public:
    void add(std::uint32_t tag, const std::string& text) {
        if (!text.empty())
            m_fields.push_back({tag, text});
    }

    // Leaves out what is not known (0) or no number.
    void add(std::uint32_t tag, float number) {
        if (std::isfinite(number) && number > 0)
            m_fields.push_back({tag, static_cast<double>(number)});
    }

    void add(std::uint32_t tag, field_array values) { m_fields.push_back({tag, std::move(values)}); }

    [[nodiscard]] std::vector<metadata_field> take() noexcept { return std::move(m_fields); }

private:
    std::vector<metadata_field> m_fields;
};

void add_exposure(field_list& fields, const libraw_imgother_t& shot) {
    fields.add(EXIFTAG_EXPOSURETIME, shot.shutter);
    fields.add(EXIFTAG_FNUMBER, shot.aperture);
    fields.add(EXIFTAG_FOCALLENGTH, shot.focal_len);
    if (shot.iso_speed >= 1 && shot.iso_speed <= 65535)
        fields.add(EXIFTAG_ISOSPEEDRATINGS,
                   array_of(std::array{static_cast<std::uint16_t>(std::lround(shot.iso_speed))}));
}

// The lens by its name and as the four numbers focal length from and to, widest aperture at either.
void add_lens(field_list& fields, const libraw_lensinfo_t& lens) {
    const std::string name = text_of(lens.Lens);
    fields.add(EXIFTAG_LENSMODEL, name.empty() ? text_of(lens.makernotes.Lens) : name);
    const auto& maker = lens.makernotes;
    const std::array numbers = {maker.MinFocal, maker.MaxFocal, maker.MaxAp4MinFocal, maker.MaxAp4MaxFocal};
    if (std::ranges::all_of(numbers, [](float number) { return std::isfinite(number) && number > 0; }))
        fields.add(EXIFTAG_LENSSPECIFICATION, array_of(numbers));
}

} // namespace

picture_metadata read_decoder_metadata(const libraw_data_t& decoded) {
    picture_metadata found;
    found.make = text_of(decoded.idata.make);
    found.model = full_model(found.make, text_of(decoded.idata.model));
    found.date_time = date_time_of(decoded.other.timestamp);
    found.artist = text_of(decoded.other.artist);
    field_list fields;
    fields.add(EXIFTAG_DATETIMEORIGINAL, found.date_time);
    fields.add(EXIFTAG_DATETIMEDIGITIZED, found.date_time);
    add_exposure(fields, decoded.other);
    add_lens(fields, decoded.lens);
    found.exif = fields.take();
    return found;
}

} // namespace sdk_open
