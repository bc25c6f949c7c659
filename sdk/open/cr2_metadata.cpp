#include "sdk/open/cr2_metadata.h"

#include "sdk/open/tiff_handle.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <utility>

namespace sdk_open {
namespace {

// Bytes that libtiff reads as a file.
class byte_source final {
public:
    explicit byte_source(std::span<const std::byte> bytes) noexcept : m_bytes(bytes) {}

    [[nodiscard]] tiff_storage inq_storage() noexcept { return {this, read, refuse_to_write, seek, size}; }

private:
    static tmsize_t read(thandle_t client, void* target, tmsize_t count) {
        auto& self = *static_cast<byte_source*>(client);
        const std::uint64_t left =
            self.m_bytes.size() - std::min<std::uint64_t>(self.m_position, self.m_bytes.size());
        const auto taken = static_cast<std::size_t>(
            std::min(left, static_cast<std::uint64_t>(std::max<tmsize_t>(count, 0))));
        if (taken != 0)
            std::memcpy(target, self.m_bytes.data() + self.m_position, taken);
        self.m_position += taken;
        return static_cast<tmsize_t>(taken);
    }

    static tmsize_t refuse_to_write(thandle_t, void*, tmsize_t) { return -1; }

    static toff_t seek(thandle_t client, toff_t offset, int origin) {
        auto& self = *static_cast<byte_source*>(client);
        const toff_t start = origin == SEEK_SET   ? 0
                             : origin == SEEK_CUR ? self.m_position
                                                  : self.m_bytes.size();
        self.m_position = start + offset;
        return self.m_position;
    }

    static toff_t size(thandle_t client) { return static_cast<byte_source*>(client)->m_bytes.size(); }

    std::span<const std::byte> m_bytes;
    std::uint64_t m_position = 0;
};

// The first directory is read as one of tags that libtiff does not know, since reading it as a picture would
// start the decoder of its preview. So each field comes with a count.
std::string fetch_text(TIFF* file, std::uint32_t tag) {
    const TIFFField* definition = TIFFFieldWithTag(file, tag);
    std::uint32_t count = 0;
    const char* text = nullptr;
    if (definition == nullptr || TIFFFieldDataType(definition) != TIFF_ASCII ||
        TIFFGetField(file, tag, &count, &text) != 1 || text == nullptr)
        return {};
    const std::string_view units(text, count);
    return std::string(units.substr(0, units.find('\0')));
}

// 0 where there is none.
std::uint32_t fetch_offset(TIFF* file, std::uint32_t tag) {
    const TIFFField* definition = TIFFFieldWithTag(file, tag);
    std::uint32_t count = 0;
    const std::uint32_t* offsets = nullptr;
    if (definition == nullptr || TIFFFieldDataType(definition) != TIFF_LONG ||
        TIFFGetField(file, tag, &count, &offsets) != 1 || offsets == nullptr || count == 0)
        return 0;
    return *offsets;
}

// The maker's own notes hold offsets into the raw file and mean nothing elsewhere.
std::vector<metadata_field> fetch_all_fields(TIFF* file) {
    std::vector<metadata_field> fields;
    for (int at = 0; at < TIFFGetTagListCount(file); ++at) {
        const std::uint32_t tag = TIFFGetTagListEntry(file, at);
        if (tag == EXIFTAG_MAKERNOTE)
            continue;
        if (auto field = fetch_field(file, tag))
            fields.push_back(std::move(*field));
    }
    return fields;
}

std::uint32_t first_directory(std::span<const std::byte> bytes) noexcept {
    constexpr std::size_t offset_at = 4;
    std::uint32_t offset = 0;
    for (std::size_t at = offset_at + 4; at > offset_at; --at)
        offset = offset << 8 | std::to_integer<std::uint32_t>(bytes[at - 1]);
    return offset;
}

} // namespace

picture_metadata read_cr2_metadata(std::span<const std::byte> bytes) {
    picture_metadata found;
    byte_source source(bytes);
    const tiff_handle file = open_tiff(source.inq_storage(), "rhm");
    // Gives the handle the defaults that reading a directory starts from.
    if (!file || TIFFCreateDirectory(file.get()) != 0 ||
        TIFFReadEXIFDirectory(file.get(), first_directory(bytes)) != 1)
        return found;
    found.make = fetch_text(file.get(), TIFFTAG_MAKE);
    found.model = fetch_text(file.get(), TIFFTAG_MODEL);
    found.date_time = fetch_text(file.get(), TIFFTAG_DATETIME);
    found.artist = fetch_text(file.get(), TIFFTAG_ARTIST);
    found.copyright = fetch_text(file.get(), TIFFTAG_COPYRIGHT);
    const std::uint32_t exif = fetch_offset(file.get(), TIFFTAG_EXIFIFD);
    const std::uint32_t gps = fetch_offset(file.get(), TIFFTAG_GPSIFD);
    if (exif != 0 && TIFFReadEXIFDirectory(file.get(), exif) == 1)
        found.exif = fetch_all_fields(file.get());
    if (gps != 0 && TIFFReadGPSDirectory(file.get(), gps) == 1)
        found.gps = fetch_all_fields(file.get());
    return found;
}

} // namespace sdk_open
