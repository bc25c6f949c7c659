#include "sdk/open/metadata_field.h"

#include <span>
#include <utility>

// libtiff hands values over through variable arguments: which ones a field takes follows from its definition.
namespace sdk_open {
namespace {

using field_value = decltype(metadata_field::value);

// The size of one value in memory, in bytes.
std::size_t unit_size(const TIFFField* definition) {
    return static_cast<std::size_t>(TIFFFieldSetGetSize(definition));
}

bool is_floating(const TIFFField* definition) {
    switch (TIFFFieldDataType(definition)) {
    case TIFF_RATIONAL:
    case TIFF_SRATIONAL:
    case TIFF_FLOAT:
    case TIFF_DOUBLE:
        return true;
    default:
        return false;
    }
}

bool is_signed(const TIFFField* definition) {
    switch (TIFFFieldDataType(definition)) {
    case TIFF_SBYTE:
    case TIFF_SSHORT:
    case TIFF_SLONG:
        return true;
    default:
        return false;
    }
}

field_array copied(const void* values, std::uint32_t count, std::size_t size) {
    const std::span bytes(static_cast<const std::byte*>(values), count * size);
    return {count, {bytes.begin(), bytes.end()}};
}

std::optional<field_value> fetch_counted(TIFF* file, std::uint32_t tag, const TIFFField* definition) {
    const void* values = nullptr;
    std::uint32_t count = 0;
    if (TIFFFieldSetGetCountSize(definition) == 2) {
        std::uint16_t short_count = 0;
        if (TIFFGetField(file, tag, &short_count, &values) != 1)
            return std::nullopt;
        count = short_count;
    } else if (TIFFGetField(file, tag, &count, &values) != 1) {
        return std::nullopt;
    }
    if (values == nullptr)
        return std::nullopt;
    return copied(values, count, unit_size(definition));
}

std::optional<field_value> fetch_text(TIFF* file, std::uint32_t tag) {
    const char* text = nullptr;
    if (TIFFGetField(file, tag, &text) != 1 || text == nullptr)
        return std::nullopt;
    return std::string(text);
}

std::optional<field_value> fetch_fixed(TIFF* file, std::uint32_t tag, const TIFFField* definition) {
    const void* values = nullptr;
    if (TIFFGetField(file, tag, &values) != 1 || values == nullptr)
        return std::nullopt;
    return copied(values, static_cast<std::uint32_t>(TIFFFieldReadCount(definition)), unit_size(definition));
}

template <typename Number>
std::optional<field_value> fetch_number(TIFF* file, std::uint32_t tag) {
    Number number{};
    if (TIFFGetField(file, tag, &number) != 1)
        return std::nullopt;
    return static_cast<double>(number);
}

std::optional<field_value> fetch_single(TIFF* file, std::uint32_t tag, const TIFFField* definition) {
    const std::size_t size = unit_size(definition);
    if (is_floating(definition))
        return size == sizeof(double) ? fetch_number<double>(file, tag) : fetch_number<float>(file, tag);
    const bool has_sign = is_signed(definition);
    switch (size) {
    case 1:
        return has_sign ? fetch_number<std::int8_t>(file, tag) : fetch_number<std::uint8_t>(file, tag);
    case 2:
        return has_sign ? fetch_number<std::int16_t>(file, tag) : fetch_number<std::uint16_t>(file, tag);
    case 4:
        return has_sign ? fetch_number<std::int32_t>(file, tag) : fetch_number<std::uint32_t>(file, tag);
    default: // offsets of directories
        return std::nullopt;
    }
}

std::optional<field_value> fetch_value(TIFF* file, std::uint32_t tag, const TIFFField* definition) {
    if (TIFFFieldPassCount(definition) != 0)
        return fetch_counted(file, tag, definition);
    if (TIFFFieldDataType(definition) == TIFF_ASCII)
        return fetch_text(file, tag);
    if (TIFFFieldReadCount(definition) == 1)
        return fetch_single(file, tag, definition);
    return TIFFFieldReadCount(definition) > 1 ? fetch_fixed(file, tag, definition) : std::nullopt;
}

bool store(TIFF* file, std::uint32_t tag, const TIFFField*, const std::string& text) {
    return TIFFSetField(file, tag, text.c_str()) == 1;
}

bool store(TIFF* file, std::uint32_t tag, const TIFFField* definition, double number) {
    if (is_floating(definition))
        return TIFFSetField(file, tag, number) == 1;
    return TIFFSetField(file, tag, static_cast<int>(number)) == 1;
}

bool store(TIFF* file, std::uint32_t tag, const TIFFField* definition, const field_array& values) {
    if (TIFFFieldPassCount(definition) == 0)
        return TIFFSetField(file, tag, values.bytes.data()) == 1;
    if (TIFFFieldSetGetCountSize(definition) == 2)
        return TIFFSetField(file, tag, static_cast<int>(values.count), values.bytes.data()) == 1;
    return TIFFSetField(file, tag, values.count, values.bytes.data()) == 1;
}

} // namespace

std::optional<metadata_field> fetch_field(TIFF* file, std::uint32_t tag) {
    const TIFFField* definition = TIFFFieldWithTag(file, tag);
    if (definition == nullptr || TIFFFieldIsAnonymous(definition) != 0)
        return std::nullopt;
    auto value = fetch_value(file, tag, definition);
    if (!value)
        return std::nullopt;
    return metadata_field{tag, std::move(*value)};
}

bool store_field(TIFF* file, const metadata_field& field) {
    const TIFFField* definition = TIFFFieldWithTag(file, field.tag);
    return definition != nullptr &&
           std::visit([&](const auto& value) { return store(file, field.tag, definition, value); },
                      field.value);
}

} // namespace sdk_open
