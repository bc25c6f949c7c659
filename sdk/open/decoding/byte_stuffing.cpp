#include "sdk/open/decoding/byte_stuffing.h"

#include <algorithm>
#include <cstring>

namespace sdk_open {
namespace {

constexpr std::byte marker_start{0xff};

// How many bytes lie before the next byte ff.
std::size_t inq_plain_run(std::span<const std::byte> bytes) noexcept {
    const void* const found = bytes.empty() ? nullptr : std::memchr(bytes.data(), 0xff, bytes.size());
    return found != nullptr ? static_cast<std::size_t>(static_cast<const std::byte*>(found) - bytes.data())
                            : bytes.size();
}

} // namespace

unstuffed_bytes remove_stuffing(std::span<const std::byte> stuffed, std::span<std::byte> target) noexcept {
    std::size_t read = 0;
    std::size_t written = 0;
    while (read < stuffed.size() && written < target.size()) {
        const std::size_t run =
            inq_plain_run(stuffed.subspan(read, std::min(target.size() - written, stuffed.size() - read)));
        std::copy_n(stuffed.data() + read, run, target.data() + written);
        read += run;
        written += run;
        if (read == stuffed.size() || written == target.size())
            break;
        if (read + 1 == stuffed.size() || stuffed[read + 1] != std::byte{0})
            return {read, written, true};
        target[written++] = marker_start;
        read += 2;
    }
    return {read, written, false};
}

} // namespace sdk_open
