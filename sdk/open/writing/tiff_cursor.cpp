#include "sdk/open/writing/tiff_cursor.h"

#include <algorithm>
#include <cstdio>

namespace sdk_open {

toff_t tiff_cursor::seek(toff_t offset, int origin) noexcept {
    const toff_t start = origin == SEEK_SET ? 0 : origin == SEEK_CUR ? position : size;
    return position = start + offset;
}

void tiff_cursor::advance(std::size_t count) noexcept {
    position += count;
    size = std::max(size, position);
}

} // namespace sdk_open
