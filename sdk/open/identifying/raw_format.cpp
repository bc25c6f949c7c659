#include "sdk/open/identifying/raw_format.h"

#include "sdk/open/failure.h"

#include <algorithm>
#include <string_view>

namespace sdk_open {
namespace {

bool has_at(std::span<const std::byte> bytes, std::size_t position, std::string_view expected) {
    const auto wanted = std::as_bytes(std::span(expected));
    return bytes.size() >= position + wanted.size() &&
           std::ranges::equal(bytes.subspan(position, wanted.size()), wanted);
}

} // namespace

raw_format_t recognise_raw_format(std::span<const std::byte> bytes) {
    if (has_at(bytes, 0, {"II*\0", 4}) && has_at(bytes, 8, "CR"))
        return raw_format_t::cr2;
    if (has_at(bytes, 0, "II") && has_at(bytes, 6, "HEAPCCDR"))
        return raw_format_t::crw;
    throw_no_raw_picture();
}

} // namespace sdk_open
